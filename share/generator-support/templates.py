# Turns the templates of an IP, which are real files around a default entity name, into its output.
#
# A template marks what depends on more than a name or a number by the comment lines "-- begin NAME" and "-- end NAME".

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


def fillBlocks(template, blocks):
    """The template without marks; the lines between those of a name in 'blocks' are replaced by that list of lines."""
    for name, lines in blocks.items():
        pattern = r'(?ms)^( *)-- begin %s\n.*?^ *-- end %s\n' % (name, name)
        template, count = re.subn(
            pattern, lambda match: ''.join(line + '\n' for line in indented(lines, match.group(1))), template)
        if count != 1:
            raise ValueError('%d blocks "%s"' % (count, name))
    template = re.sub(r'(?m)^ *-- (begin|end) [a-z ]+\n', '', template)
    return re.sub(r'\n{3,}', '\n\n', template)


def keepBlocks(template, choices):
    """The template without the blocks whose names the dictionary 'choices' maps to False; several may have one name."""
    for name, isKept in choices.items():
        if not isKept:
            template = re.sub(r'(?ms)^ *-- begin %s\n.*?^ *-- end %s\n' % (name, name), '', template)
    return template


def setConstants(template, values):
    """The template with the constants named in 'values' set to them."""
    for name, value in values.items():
        pattern = r'(?m)^( *constant %s +: [^:]+ := )[^;]+;' % name
        template, count = re.subn(pattern, lambda match: '%s%s;' % (match.group(1), value), template)
        if count != 1:
            raise ValueError('%d constants %s' % (count, name))
    return template
