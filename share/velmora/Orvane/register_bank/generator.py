# Generator of the IP "Register bank".

import ast
import re

IP_NAME = 'Register bank'
SCRIPT_VERSION = '1.0.0'
DEFAULT_ENTITY = 'register_bank'
TOP_TEMPLATE = 'rtl/register_bank.vhd'
HEADER_TEMPLATE = 'include/register_bank_regs.h'
DOCUMENT_TEMPLATE = 'doc/register_bank.md'
BENCH_TEMPLATE = 'register_bank_tb.vhd'

ADDRESS_WIDTH = 8
BUS_WIDTH = 32

ACCESS_TEXTS = {'rw': 'RW', 'ro': 'RO', 'w1c': 'W1C', 'pulse': 'Pulse'}

# ISO/IEC 9899:1999, 6.4.1, and what later editions add.
C_WORDS = frozenset('''
    auto break case char const continue default do double else enum extern float for goto if inline int long register
    restrict return short signed sizeof static struct switch typedef union unsigned void volatile while
    alignas alignof bool constexpr false nullptr static_assert thread_local true typeof typeof_unqual
    asm linux unix
    '''.split())
# Macros of stdint.h (ISO/IEC 9899:1999, 7.18).
C_MACROS = r'(U?INT|PTRDIFF|SIG_ATOMIC|SIZE|WCHAR|WINT)\w*_(MAX|MIN|WIDTH|C)\Z'


class Register(object):
    """A line of the form's table."""

    def __init__(self, number, line):
        self.number = number
        name, self.access, self.width, resetText, description = line
        self.name = printableText(name)
        self.resetText = printableText(resetText).strip()
        self.description = printableText(description).strip()
        self.offset = 4 * number
        self.isStored = self.access != 'ro'
        self.isReadable = self.access != 'pulse'
        self.reset = self.readReset()

    def readReset(self):
        """The reset value, None if the text is none."""
        match = re.match(r'(?:0[xX]([0-9A-Fa-f_]*[0-9A-Fa-f])|([0-9]+))\Z', self.resetText)
        if match is None:
            return None
        return int(match.group(1).replace('_', ''), 16) if match.group(1) else int(match.group(2))

    def label(self, title):
        return '%s in line %d' % (title, self.number)

    def key(self, title):
        return 'Registers/%d/%s' % (self.number, title)

    def nameProblem(self):
        label = self.label('Name')
        problem = basicIdentifierProblem(label, self.name)
        if problem:
            return problem
        if self.name.lower() in RESERVED_WORDS:
            return '%s "%s" is a reserved word of VHDL: choose another name.' % (label, self.name)
        if self.name in C_WORDS or re.match(C_MACROS, self.name):
            return '%s "%s" is a reserved word or a macro of C: choose another name.' % (label, self.name)
        return None

    def resetProblem(self):
        label = self.label('Reset value')
        if self.reset is None:
            return '%s "%s" is no number: enter a decimal one, or a hexadecimal one such as 0x1F.' % (label, self.resetText)
        if self.reset >= 2 ** self.width:
            return '%s needs %d bits, the register has %d: enter a smaller one.' % (label, self.reset.bit_length(), self.width)
        if self.reset and self.access in ('ro', 'pulse'):
            return '%s has no meaning for the access %s: enter 0.' % (label, ACCESS_TEXTS[self.access])
        return None

    def ports(self):
        """(name, direction, width, comment) of what the logic sees."""
        return {
            'rw': [('%s_out', 'out', 'value')],
            'ro': [('%s_in', 'in', 'value to read')],
            'w1c': [('%s_set', 'in', 'sets bits'), ('%s_out', 'out', 'bits that are set')],
            'pulse': [('%s_pulse', 'out', 'bits written as 1, for one clock')],
        }[self.access]

    def bits(self):
        return '(%d downto 0)' % (self.width - 1)

    def resetLiteral(self):
        return '"%s"' % bin(self.reset)[2:].zfill(self.width)


def assignments(pairs):
    """VHDL lines that assign, in columns; pairs of target and source."""
    width = max([len(target) for target, _ in pairs] or [0])
    return ['%s <= %s;' % (target.ljust(width), source) for target, source in pairs]


def signalLines(signals):
    """VHDL lines that declare (name, type), in columns."""
    width = max([len(name) for name, _ in signals] or [0])
    return ['signal %s : %s;' % (name.ljust(width), kind) for name, kind in signals]


def markdownText(text):
    return re.sub(r'([\\|*_<>\[\]&#])', r'\\\1', text)


def commentText(text):
    """The text without what begins or ends a comment of C."""
    return text.replace('*/', '* /').replace('/*', '/ *')


class RegisterBank(FormDesign):
    """A register bank described by the argument dictionary."""

    def __init__(self, argDict):
        self.entityName = printableText(argDict['%%ENTITY_NAME%%'])
        self.registers = [Register(number, line)
                          for number, line in enumerate(ast.literal_eval(argDict['%%REGISTERS%%']))]
        self.stored = [register for register in self.registers if register.isStored]
        self.application = printableText(argDict['%%APPLICATION%%'])
        self.date = printableText(argDict['%%DATE%%'])

    def faults(self):
        faults = []
        unitNames = [self.entityName, self.entityName + '_tb']
        usedNames = set(name.lower() for name, _, _, _ in self.ports()) | set(['rtl'])
        usedNames |= interfaceIdentifiers(TEMPLATES[TOP_TEMPLATE]) - set([DEFAULT_ENTITY])
        problem = entityNameProblem('Entity name', self.entityName, unitNames, usedNames)
        if problem:
            faults.append((problem, ['Entity']))
        first = {}
        for register in self.registers:
            other = first.setdefault(register.name.lower(), register)
            problem = register.nameProblem()
            if problem:
                faults.append((problem, [register.key('Name')]))
            elif other is not register:
                faults.append(('%s "%s" stands in line %d, too: names differ in more than case.'
                               % (register.label('Name'), register.name, other.number),
                               [register.key('Name'), other.key('Name')]))
            problem = register.resetProblem()
            if problem:
                keys = ['Reset value'] + (['Width'] if ' needs ' in problem else [])
                faults.append((problem, [register.key(title) for title in keys]))
        return faults

    def facts(self):
        widths = dict((access, sum(register.width for register in self.registers if register.access == access))
                      for access in ACCESS_TEXTS)
        return [
            ('Registers', len(self.registers), ''),
            ('Address space', 2 ** ADDRESS_WIDTH, 'bytes'),
            ('Storage', widths['rw'] + widths['w1c'] + widths['pulse'], 'bits'),
            ('Files', 3, ''),
            ('Read only', widths['ro'], 'bits'),
        ]

    def headerEntries(self):
        return [
            ('IP', IP_NAME),
            ('Entity', self.entityName),
            ('Generator', SCRIPT_VERSION),
            ('Application', self.application),
            ('Date', self.date),
            ('Registers', len(self.registers)),
        ]

    def ports(self):
        ports = [
            ('pclk', 'in', None, ''),
            ('presetn', 'in', None, 'asynchronous, active low'),
            ('psel', 'in', None, ''),
            ('penable', 'in', None, ''),
            ('pwrite', 'in', None, ''),
            ('paddr', 'in', ADDRESS_WIDTH, 'byte address'),
            ('pwdata', 'in', BUS_WIDTH, ''),
            ('prdata', 'out', BUS_WIDTH, ''),
            ('pready', 'out', None, 'always 1'),
            ('pslverr', 'out', None, 'access refused'),
        ]
        return ports + [(pattern % register.name, direction, register.width, comment)
                        for register in self.registers for pattern, direction, comment in register.ports()]

    def choiceLines(self, register):
        lines = [('refused', ':=', "'0'" if register.isStored else 'pwrite')]
        if register.isStored:
            lines.append((register.name + '_write', '<=', 'pwrite'))
        if register.isReadable:
            part = 'value' + register.bits()
            lines.append((part, ':=', part + ' or ' + register.name + ('_reg' if register.isStored else '_in')))
        width = max(len(target) for target, _, _ in lines)
        return (['if paddr = x"%02x" then -- %s' % (register.offset, register.name)]
                + indented(['%s %s %s;' % (target.ljust(width), sign, source) for target, sign, source in lines])
                + ['end if;'])

    def writeLines(self, register):
        name, data = register.name, 'pwdata' + register.bits()
        if register.access == 'w1c':
            data = '(%s_reg and not %s) or %s_set' % (name, data, name)
        return ["if %s_write = '1' then" % name, '  %s_reg <= %s;' % (name, data), 'end if;']

    def designText(self):
        stored = self.stored
        noWrites = assignments([(register.name + '_write', "'0'") for register in stored])
        outputs = [(pattern % register.name, register.name + '_reg') for register in stored
                   for pattern, direction, _ in register.ports() if direction == 'out']
        blocks = {
            'ports': portLines(self.ports()),
            'registers': signalLines([(register.name + '_reg', 'std_logic_vector' + register.bits())
                                      for register in stored]),
            'write signals': signalLines([(register.name + '_write', 'std_logic') for register in stored]),
            'reset writes': noWrites,
            'no writes': noWrites,
            'choices': sum([self.choiceLines(register) for register in self.registers], []),
            'outputs': assignments(outputs),
        }
        if stored:
            defaults = [(register.name + '_reg', '%s_reg or %s_set' % (register.name, register.name))
                        for register in stored if register.access == 'w1c']
            defaults += [(register.name + '_reg', '"%s"' % ('0' * register.width))
                         for register in stored if register.access == 'pulse']
            blocks.update({
                'resets': assignments([(register.name + '_reg', register.resetLiteral()) for register in stored]),
                'defaults': assignments(defaults),
                'writes': sum([self.writeLines(register) for register in stored], []),
            })
        else:
            blocks['storage'] = []
        return fillBlocks(self.template(TOP_TEMPLATE), blocks)

    def macroLines(self, register):
        prefix = '%s_%s' % (self.entityName.upper(), register.name.upper())
        comment = '%s, %s' % (register.name, ACCESS_TEXTS[register.access])
        if register.description:
            comment += ': ' + commentText(register.description)
        return [
            '/* %s */' % comment,
            '#define %s_OFFSET 0x%02xu' % (prefix, register.offset),
            '#define %s_WIDTH %du' % (prefix, register.width),
            '#define %s_MASK 0x%08xu' % (prefix, 2 ** register.width - 1),
            '#define %s_RESET 0x%08xu' % (prefix, register.reset),
        ]

    def headerText(self):
        macros = sum([self.macroLines(register) + [''] for register in self.registers], [])[:-1]
        members = ['  %svolatile uint32_t %s;' % ('' if register.isStored else 'const ', register.name)
                   for register in self.registers]
        text = replaceLine(self.template(HEADER_TEMPLATE), '/* REGISTER DEFINITIONS */', macros)
        return replaceLine(text, '/* REGISTER MEMBERS */', members)

    def documentText(self):
        rows = ['| Offset | Name | Access | Bits | Reset | Meaning |', '|---|---|---|---|---|---|']
        rows += ['| 0x%02x | %s | %s | %d | %s | %s |'
                 % (register.offset, markdownText(register.name), ACCESS_TEXTS[register.access], register.width,
                    '0x%x' % register.reset, markdownText(register.description)) for register in self.registers]
        return replaceLine(self.template(DOCUMENT_TEMPLATE), '<!-- REGISTER TABLE -->', rows)

    def files(self):
        """The files by their names; none of a design that cannot be generated."""
        if self.refusal():
            return {}
        entries = self.headerEntries()
        contents = {
            TOP_TEMPLATE: headerComment(entries) + '\n' + self.designText(),
            HEADER_TEMPLATE: headerComment(entries, '/* ', ' */') + '\n' + self.headerText(),
            DOCUMENT_TEMPLATE: headerComment(entries, '<!-- ', ' -->') + '\n' + self.documentText(),
        }
        # The program ends every line that it writes, the last one included.
        return dict((renameEntity(name, DEFAULT_ENTITY, self.entityName), content.rstrip('\n'))
                    for name, content in contents.items())

    def template(self, name):
        """A template of the entity, renamed before names and texts of the form's table are put in."""
        return renameEntity(TEMPLATES[name], DEFAULT_ENTITY, self.entityName)

    def bench(self):
        registers = self.registers
        last = len(registers) - 1
        connections = []
        for register in registers:
            for pattern, direction, _ in register.ports():
                vector = 'inputs' if direction == 'in' else 'outputs'
                connections.append((pattern % register.name, '%s(%d)%s' % (vector, register.number, register.bits())))
        width = max(len(port) for port, _ in connections)
        lines = ['%s => %s,' % (port.ljust(width), signal) for port, signal in connections]
        return benchText(self, TEMPLATES[BENCH_TEMPLATE], DEFAULT_ENTITY, {}, {
            'connections': lines[:-1] + [lines[-1][:-1]],
            'table': ['constant REGISTERS : registers_t(0 to %d) := (' % last] + [
                '  %d => (%s, %d, x"%08x")%s -- %s' % (register.number, register.access.upper(), register.width,
                                                   register.reset, ');' if register.number == last else ',', register.name)
                for register in registers],
        })


def generate(argDict):
    return RegisterBank(argDict).files()


def describe(argDict):
    return RegisterBank(argDict).describe()


def check(argDict):
    return RegisterBank(argDict).faults()


def testBench(argDict):
    return RegisterBank(argDict).bench()
