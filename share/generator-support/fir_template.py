# Turns the template of a filter, a working filter of default size, into the filter asked for.
#
# A template marks what depends on more than a number by the comment lines "-- begin NAME" and "-- end NAME".

import re


def filterTemplate(templateName, entityName):
    """The template with its entity, which has the template's own name, called 'entityName'."""
    return renameEntity(TEMPLATES[templateName], templateName[:-len('.vhd')], entityName)


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


def setConstants(template, values):
    """The template with the constants named in 'values' set to them."""
    for name, value in values.items():
        pattern = r'(?m)^( *constant %s +: [^:]+ := )[^;]+;' % name
        template, count = re.subn(pattern, lambda match: '%s%s;' % (match.group(1), value), template)
        if count != 1:
            raise ValueError('%d constants %s' % (count, name))
    return template


def indented(lines, blanks='  '):
    return [(blanks + line).rstrip() for line in lines]


def withComments(lines, comments):
    """The lines with their comments behind them, in one column; '' is no comment."""
    width = max(len(line) for line in lines)
    return ['%s -- %s' % (line.ljust(width), comment) if comment else line for line, comment in zip(lines, comments)]


def insertPort(ports, name, port):
    """Puts a port into the list, behind the one of that name."""
    ports.insert([each[0] for each in ports].index(name) + 1, port)


def portLines(ports):
    """VHDL lines of ports given as (name, direction, width or None for a single bit, comment or '')."""
    nameWidth = max(len(name) for name, _, _, _ in ports)
    declarations = []
    for name, direction, width, _ in ports:
        portType = 'std_logic' if width is None else 'std_logic_vector(%d downto 0)' % (width - 1)
        declarations.append('%s : %s %s;' % (name.ljust(nameWidth), direction.ljust(3), portType))
    declarations[-1] = declarations[-1][:-1]
    return withComments(declarations, [comment for _, _, _, comment in ports])


def coefficientElements(values, width, comments):
    """VHDL lines of an aggregate's elements, each with its comment."""
    elements = ['%d => "%s",' % (index, binaryDigits(value, width)) for index, value in enumerate(values)]
    elements[-1] = elements[-1][:-1]
    return withComments(elements, comments)
