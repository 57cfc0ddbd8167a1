# Generator of the IP "APB slave to serial master": every template becomes one output file.

import re

from quarnel import printError

IP_NAME = 'APB slave to serial master'
SCRIPT_VERSION = '1.0.0'
DEFAULT_ENTITY = 'apb_serial_master'
TOP_TEMPLATE = 'rtl/apb_serial_master.vhd'
PACKAGE_TEMPLATE = 'rtl/apb_serial_master_pkg.vhd'

# Comment marks by file name extension: what begins and what ends a line.
COMMENT_MARKS = {'vhd': ('-- ', ''), 'vh': ('// ', ''), 'md': ('<!-- ', ' -->')}


def packageConstants(pattern):
    """Matches of a constant's declaration line in the package, the one source of the register map."""
    return re.findall(r'(?m)^  constant ' + pattern + '$', TEMPLATES[PACKAGE_TEMPLATE])


def registers():
    """(name, offset in hexadecimal, access, meaning) of every register, in the order of the map."""
    return packageConstants(r'REG_(\w+) *: integer := 16#(\w+)#; *-- ([^:]+): (.*)')


def fields(registerName):
    """(bits, name, meaning) of every field of a register."""
    places = packageConstants(registerName + r'_([A-Z_]+) *: integer := (\d+); *(?:-- (.*))?')
    lowPlaces = dict((name[:-len('_LOW')], place) for name, place, _ in places if name.endswith('_LOW'))
    result = []
    for name, place, meaning in places:
        if name.endswith('_HIGH'):
            name = name[:-len('_HIGH')]
            result.append((place + ':' + lowPlaces[name], name, meaning))
        elif not name.endswith('_LOW'):
            result.append((place, name, meaning))
    return result


def table(titles, rows):
    """Lines of a Markdown table."""
    lines = ['| ' + ' | '.join(row) + ' |' for row in [titles] + rows]
    return lines[:1] + ['|---' * len(titles) + '|'] + lines[1:]


def registerTable():
    resetValues = dict(packageConstants(r'RESET_(\w+) *: std_logic_vector\(31 downto 0\) := x"(\w+)";'))
    rows = [[offset, name, access, resetValues.get(name, ''), meaning] for name, offset, access, meaning in registers()]
    return table(['Offset', 'Name', 'Access', 'Reset', 'Meaning'], rows)


def fieldTable():
    rows = [[register[0]] + list(field) for register in registers() for field in fields(register[0])]
    return table(['Register', 'Bits', 'Field', 'Meaning'], rows)


def verilogDefinitions():
    width = max(len(register[0]) for register in registers())
    return ["`define %s_REG_%s 8'h%s" % (DEFAULT_ENTITY.upper(), name.ljust(width), offset)
            for name, offset, _, _ in registers()]


# Lines of a template that stand for a generated list, by file name extension.
GENERATED_LINES = {
    'vh': [('// REGISTER DEFINITIONS', verilogDefinitions)],
    'md': [('<!-- REGISTER TABLE -->', registerTable), ('<!-- FIELD TABLE -->', fieldTable)],
}


def fileContent(templateName, entityName):
    extension = templateName.rsplit('.', 1)[1]
    begin, end = COMMENT_MARKS[extension]
    content = TEMPLATES[templateName]
    for line, makeLines in GENERATED_LINES.get(extension, []):
        content = replaceLine(content, line, makeLines())
    header = headerComment([('IP', IP_NAME), ('Entity', entityName), ('Generator', SCRIPT_VERSION)], begin, end)
    # The program ends every line that it writes, the last one included.
    return header + '\n' + renameEntity(content, DEFAULT_ENTITY, entityName).rstrip('\n')


def usedNames():
    names = set()
    for templateName, template in TEMPLATES.items():
        if templateName.endswith('.vhd'):
            names |= interfaceIdentifiers(template)
    return set(name for name in names if DEFAULT_ENTITY not in name)


def nameProblem(entityName):
    """Sentence that says why the entity cannot have that name, or None."""
    unitNames = [pattern % entityName for pattern in ('%s', '%s_pkg', '%s_fifo', '%s_engine', 'tb_%s')]
    return entityNameProblem('Entity name', entityName, unitNames, usedNames())


def generate(argDict):
    entityName = argDict['%%ENTITY_NAME%%']
    problem = nameProblem(entityName)
    if problem:
        printError(problem)
        return {}
    return dict((renameEntity(templateName, DEFAULT_ENTITY, entityName), fileContent(templateName, entityName))
                for templateName in TEMPLATES)


def describe(argDict):
    if nameProblem(argDict['%%ENTITY_NAME%%']):
        return []
    highestAddressBit = re.search(r'paddr +: in +std_logic_vector\((\d+) downto 0\)', TEMPLATES[TOP_TEMPLATE]).group(1)
    return [
        ('Files', len(TEMPLATES), ''),
        ('Address space', 2 ** (int(highestAddressBit) + 1), 'bytes'),
        ('Registers', len(registers()), ''),
    ]
