# Turns the templates of an IP, which are real files around a default entity name, into its output.

import re


def renameParts(template, newNames):
    """The template with names, or parts joined by "_" in names, replaced as the dictionary 'newNames' says."""
    pattern = r'(?<![A-Za-z0-9])(%s)(?![A-Za-z0-9])' % '|'.join(re.escape(name) for name in newNames)
    return re.sub(pattern, lambda match: newNames[match.group(1)], template)


def renameEntity(template, defaultName, name):
    """The template with the entity 'defaultName' called 'name'.

    The default name may have parts joined to it by "_" (as in NAME_pkg or tb_NAME). Where it stands in upper
    case, as in the macros of a Verilog header, the new name is put in upper case, too.
    """
    return renameParts(template, {defaultName: name, defaultName.upper(): name.upper()})


def replaceLine(template, line, replacement):
    """The template with its one line 'line' replaced by a list of lines."""
    lines = template.split('\n')
    place = lines.index(line)
    return '\n'.join(lines[:place] + replacement + lines[place + 1:])
