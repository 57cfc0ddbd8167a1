# Generator of the IP "SER/DES": package, entity and architecture in one text.

import re

IP_NAME = 'SER/DES'
SCRIPT_VERSION = '1.0.0'
TEMPLATE = 'ser_des.vhd'
DEFAULT_ENTITY = 'ser_des'
DEFAULT_PREFIX = 'LINK'

LOCATION_LENGTH = 3
DELAY_LENGTH = 2
NO_LOCATION = 'XXX'
NO_DELAY = '00'
EMPTY_AGGREGATES = ['(others => "%s")' % NO_LOCATION, '()']

# Families of pad types that have one pin for a line; all others are differential.
SINGLE_ENDED_FAMILIES = ['LVTTL', 'LVCMOS', 'PCI', 'SSTL', 'HSTL']

# Strings of the package in the form's order: (key, form label, section of the form).
STRINGS = [
    ('BANK_NUMBER', 'Bank number', ''),
    ('SER_PADTYPE', 'Pad type', 'SER'),
    ('SER_DIFFERENTIAL', 'Differential', 'SER'),
    ('SER_SLEW_RATE', 'Slew rate', 'SER'),
    ('SER_OUTPUT_CAPACITY', 'Output capacity', 'SER'),
    ('DES_PADTYPE', 'Pad type', 'DES'),
    ('DES_DIFFERENTIAL', 'Differential', 'DES'),
    ('DES_TERMINATION', 'Termination', 'DES'),
    ('DES_TERMINATION_REFERENCE', 'Termination reference', 'DES'),
    ('DES_TURBO', 'Turbo', 'DES'),
    ('DES_INPUT_SIGNAL_SLOPE', 'Input signal slope', 'DES'),
]

# Attributes of the serial ports: (attribute, key of its value).
SER_ATTRIBUTES = [
    ('pad_bank', 'BANK_NUMBER'),
    ('pad_type', 'SER_PADTYPE'),
    ('pad_differential', 'SER_DIFFERENTIAL'),
    ('pad_slew_rate', 'SER_SLEW_RATE'),
    ('pad_output_capacity', 'SER_OUTPUT_CAPACITY'),
    ('pad_location', 'SER_LOCATIONS'),
    ('pad_output_delay', 'SER_OUTPUT_DELAY_LINE'),
]
DES_ATTRIBUTES = [
    ('pad_bank', 'BANK_NUMBER'),
    ('pad_type', 'DES_PADTYPE'),
    ('pad_differential', 'DES_DIFFERENTIAL'),
    ('pad_termination', 'DES_TERMINATION'),
    ('pad_termination_reference', 'DES_TERMINATION_REFERENCE'),
    ('pad_turbo', 'DES_TURBO'),
    ('pad_input_signal_slope', 'DES_INPUT_SIGNAL_SLOPE'),
    ('pad_location', 'DES_LOCATIONS'),
    ('pad_input_delay', 'DES_INPUT_DELAY_LINE'),
]


def unquoted(text):
    """The content of a VHDL string literal as the form writes it, without its quotes."""
    return text[1:-1]


def literal(text):
    return '"%s"' % text.replace('"', '""')


def sectionLabel(label, side):
    """A form label with the section that it stands in, as many labels stand in two."""
    return '%s (%s parameters)' % (label, side) if side else label


def aggregateProblem(label, text, count, length, mayBeEmpty):
    """Sentence that says why an aggregate of the form does not hold one entry for each line, or None."""
    if text in EMPTY_AGGREGATES:
        entries = []
    elif re.match(r'\(\d+ => "[^"]*"(, \d+ => "[^"]*")*\)\Z', text):
        entries = aggregateEntries(text)
    else:
        return '%s cannot be read in %s: give one entry for each line.' % (label, text)
    if [index for index, _ in entries] != range(count):
        return '%s has not exactly the entries 0 to %d, one for each line: it is %s.' % (label, count - 1, text)
    for index, entry in entries:
        if len(entry) != length and (entry or not mayBeEmpty):
            return '%s "%s" of line %d has %d characters: it needs %d.' % (label, entry, index, len(entry), length)
    return None


def aggregateEntries(text):
    """(index, entry) of each entry of an aggregate, by rising index."""
    return sorted((int(index), entry) for index, entry in re.findall(r'(\d+) => "([^"]*)"', text))


class SerDes(Design):
    """An interface described by the argument dictionary."""

    def __init__(self, argDict):
        arguments = dict((key.strip('%'), printableText(value)) for key, value in argDict.items())
        self.arguments = arguments
        self.prefix = arguments['PREFIX']
        self.entityName = arguments['ENTITY_NAME']
        self.wordClock = int(arguments['WORD_CLOCK'])
        self.dataSize = int(arguments['DATA_SIZE'])
        self.counts = dict((side, int(arguments[side + '_COUNT'])) for side in ('SER', 'DES'))
        self.trainings = dict((side, unquoted(arguments[side + '_TRAINING_VALUE'])) for side in ('SER', 'DES'))
        self.strings = dict((key, unquoted(arguments[key])) for key, _, _ in STRINGS)

    def aggregates(self):
        """(key, form label, number of lines, length of an entry, text of an empty one) of each aggregate."""
        return [
            ('SER_LOCATIONS', sectionLabel('Location', 'SER'), self.counts['SER'], LOCATION_LENGTH, NO_LOCATION),
            ('SER_OUTPUT_DELAY_LINE', sectionLabel('Output delay line', 'SER'), self.counts['SER'], DELAY_LENGTH,
             NO_DELAY),
            ('DES_LOCATIONS', sectionLabel('Location', 'DES'), self.counts['DES'], LOCATION_LENGTH, NO_LOCATION),
            ('DES_INPUT_DELAY_LINE', sectionLabel('Input delay line', 'DES'), self.counts['DES'], DELAY_LENGTH,
             NO_DELAY),
        ]

    def problems(self):
        found = self.nameProblems() + self.trainingProblems()
        for key, label, count, length, emptyText in self.aggregates():
            found.append(aggregateProblem(label, self.arguments[key], count, length, emptyText == NO_LOCATION))
        return [problem for problem in found if problem]

    def nameProblems(self):
        prefixProblem = basicIdentifierProblem("Parameter's prefix", self.prefix)
        usedNames = set() if prefixProblem else self.usedNames()
        unitNames = [self.entityName, self.entityName + '_pkg']
        return [entityNameProblem('Entity name', self.entityName, unitNames, usedNames), prefixProblem]

    def usedNames(self):
        """Names that the text uses for something else where the entity name is visible, too.

        Names inside the architecture do not count: there they hide the entity name, which is not needed.
        """
        names = interfaceIdentifiers(renameParts(TEMPLATES[TEMPLATE], {DEFAULT_PREFIX: self.prefix}))
        return names - set([DEFAULT_ENTITY, DEFAULT_ENTITY + '_pkg'])

    def trainingProblems(self):
        sides = ['DES'] if self.trainings['SER'] == self.trainings['DES'] else ['SER', 'DES']
        return [self.trainingProblem(side) for side in sides]

    def trainingProblem(self, side):
        label, value = sectionLabel('Training value', side), self.trainings[side]
        if value.strip('01'):
            return '%s "%s" holds a character other than 0 and 1: write one digit for each bit.' % (label, value)
        if len(value) != self.dataSize:
            return ('%s "%s" has %d digits: write %d, as many as the Data size.'
                    % (label, value, len(value), self.dataSize))
        return None

    def remarks(self):
        found = []
        for side in ('SER', 'DES'):
            for index, entry in aggregateEntries(self.arguments[side + '_LOCATIONS']):
                if not entry:
                    found.append('%s: %s%d has none and gets "%s": place it by the constraints of the project.'
                                 % (sectionLabel('Location', side), side, index, NO_LOCATION))
        found += self.padRemarks()
        training = self.trainings['DES']
        if self.counts['DES'] and training in [training[k:] + training[:k] for k in range(1, self.dataSize)]:
            found.append('Training value (DES parameters) "%s" equals itself when rotated, so that it cannot tell '
                         'where a word begins: finish the alignment by des_bitslip.' % training)
        return found

    def padRemarks(self):
        """What cannot hold for the pins of differential lines, each of which takes both pads of a pair."""
        found, linesOfPairs = [], {}
        for side in ('SER', 'DES'):
            padType = self.strings[side + '_PADTYPE']
            if self.counts[side] and self.isDifferential(side) and padType.split('_')[0] in SINGLE_ENDED_FAMILIES:
                found.append('%s: %s has one pin for a line, but the lines are differential: choose a differential pad '
                             'type, or False for Differential.' % (sectionLabel('Pad type', side), padType))
            for index, pad in aggregateEntries(self.arguments[side + '_LOCATIONS']):
                if pad:
                    linesOfPairs.setdefault(pad[:-1], []).append((side, index))
        for pair, lines in sorted(linesOfPairs.items()):
            if len(lines) > 1 and any(self.isDifferential(side) for side, _ in lines):
                names = ' and '.join('%s%d' % line for line in lines)
                found.append('%s: %s lie on the pads of the pair %s, both of which a differential line takes: move one '
                             'to another pair.' % (sectionLabel('Location', lines[-1][0]), names, pair))
        return found

    def isDifferential(self, side):
        return self.strings[side + '_DIFFERENTIAL'] == 'True'

    def bitClock(self):
        return self.wordClock * self.dataSize

    def facts(self):
        return [
            ('Serialisers', self.counts['SER'], ''),
            ('Deserialisers', self.counts['DES'], ''),
            ('Bit clock', self.bitClock(), 'MHz'),
            ('Word size', self.dataSize, 'bits'),
        ]

    def headerEntries(self):
        entries = [
            ('IP', IP_NAME),
            ('Entity', self.entityName),
            ('Generator', SCRIPT_VERSION),
            ('Date', self.arguments['DATE']),
            ("Parameter's prefix", self.prefix),
            ('Word clock frequency (MHz)', self.wordClock),
            ('Data size', self.dataSize),
            ('SER count', self.counts['SER']),
            ('DES count', self.counts['DES']),
            ('Bank number', self.strings['BANK_NUMBER']),
        ]
        for side in ('SER', 'DES'):
            entries += [(side + ' ' + label, self.strings[key]) for key, label, section in STRINGS if section == side]
            entries.append((side + ' Training value', self.trainings[side]))
        return entries

    def designText(self):
        template = renameParts(TEMPLATES[TEMPLATE], {DEFAULT_ENTITY: self.entityName, DEFAULT_PREFIX: self.prefix})
        blocks = {
            'constants': self.constantLines(),
            'ports': self.portDeclarations(),
            'attributes': self.attributeLines(),
        }
        if not self.counts['SER']:
            blocks['serialisers'] = []
        if not self.counts['DES']:
            blocks.update({'arithmetic': [], 'deserialiser declarations': [], 'deserialisers': []})
        if not any(self.counts.values()):
            blocks.update({'crossing explained': [], 'crossing declarations': [], 'crossing': []})
        return fillBlocks(template, blocks)

    def constantLines(self):
        width = max(len('%s_%s' % (self.prefix, key)) for key, _, _ in STRINGS)

        def declaration(name, kind, value):
            return 'constant %s : %s := %s;' % (('%s_%s' % (self.prefix, name)).ljust(width), kind, value)

        vectorType = 'std_logic_vector(%s_DATA_SIZE - 1 downto 0)' % self.prefix
        lines = withComments([
            declaration('WORD_CLOCK', 'integer', self.wordClock),
            declaration('BIT_CLOCK', 'integer', self.bitClock()),
            declaration('DATA_SIZE', 'integer', self.dataSize),
            declaration('SER_COUNT', 'integer', self.counts['SER']),
            declaration('DES_COUNT', 'integer', self.counts['DES']),
        ], ['MHz', 'MHz', 'bits of a word', 'serialisers', 'deserialisers'])
        lines += [declaration(key, 'string ', literal(self.strings[key])) for key, _, _ in STRINGS]
        lines += [declaration(side + '_TRAINING_VALUE', vectorType, literal(self.trainings[side]))
                  for side in ('SER', 'DES')]
        lines += ['', '-- Pads and the taps of their delay lines. Line i of the interface is at index i.']
        for key, _, _, length, emptyText in self.aggregates():
            lines += self.arrayLines(key, 'LOCATION' if length == LOCATION_LENGTH else 'DELAY', self.entryTexts(key))
        return lines

    def entryTexts(self, key):
        """Entry of each line of the interface; of an absent side one entry that stands for nothing."""
        emptyText = NO_LOCATION if key.endswith('_LOCATIONS') else NO_DELAY
        return [entry or emptyText for _, entry in aggregateEntries(self.arguments[key])] or [emptyText]

    def arrayLines(self, key, kind, texts):
        entriesInRow = 6
        entries = ['%d => %s' % (index, literal(text)) for index, text in enumerate(texts)]
        rows = [', '.join(entries[start:start + entriesInRow]) for start in range(0, len(entries), entriesInRow)]
        head = 'constant %s_%s : %s_%s_ARRAY(0 to %d) := (' % (self.prefix, key, self.prefix, kind, len(texts) - 1)
        return [head] + ['  %s,' % row for row in rows[:-1]] + ['  %s' % rows[-1], ');']

    def portDeclarations(self):
        serCount, desCount = self.counts['SER'], self.counts['DES']
        ports = [
            ('reset', 'in', None, 'asynchronous, active high, at least 2 word periods'),
            ('word_clk', 'in', None, ''),
            ('bit_clk', 'in', None, '%s_DATA_SIZE times word_clk, same source, any phase' % self.prefix),
        ]
        if serCount:
            ports += [
                ('ser_training', 'in', None, '1: all serialisers send the training value'),
                ('ser_data', 'in', serCount * self.dataSize, 'words to send, line 0 in the lowest bits'),
                ('ser_out', 'out', serCount, 'serial outputs, most significant bit first'),
            ]
        if desCount:
            ports += [
                ('des_training', 'in', None, '1: the deserialisers search the training value'),
                ('des_bitslip', 'in', desCount, '1 at a word edge: one bit later, while not searching'),
                ('des_in', 'in', desCount, 'serial inputs'),
                ('des_data', 'out', desCount * self.dataSize, 'received words, line 0 in the lowest bits'),
                ('des_aligned', 'out', desCount, 'the line has found the training value'),
                ('des_locked', 'out', None, 'all lines have'),
            ]
        return portLines(ports)

    def attributeLines(self):
        """Each attribute stands alone on its line, so that a line tool can remove them all."""
        ports = [(port, attributes) for port, side, attributes in
                 (('ser_out', 'SER', SER_ATTRIBUTES), ('des_in', 'DES', DES_ATTRIBUTES)) if self.counts[side]]
        if not ports:
            return []
        names = []
        for _, attributes in ports:
            names += [name for name, _ in attributes if name not in names]
        lines = ['-- For the implementation tool. Lists begin with line 0.']
        lines += ['attribute %s : string;' % name for name in names]
        for port, attributes in ports:
            lines.append('')
            lines += ['attribute %s of %s : signal is %s;' % (name, port, literal(self.attributeValue(key)))
                      for name, key in attributes]
        return lines

    def attributeValue(self, key):
        return self.strings[key] if key in self.strings else ','.join(self.entryTexts(key))


def generate(argDict):
    return SerDes(argDict).generate()


def describe(argDict):
    return SerDes(argDict).describe()


def testBench(argDict):
    return serDesBench(SerDes(argDict))
