# Lists of lines of VHDL text.


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
