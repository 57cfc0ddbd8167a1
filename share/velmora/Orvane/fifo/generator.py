# Generator of the IP "Synchronous FIFO".

SCRIPT_VERSION = '1.0.0'
TEMPLATE = 'fifo.vhd'
BENCH_TEMPLATE = 'fifo_tb.vhd'
DEFAULT_ENTITY = 'fifo'

READ_MODES = {'registered': 'Registered', 'falls_through': 'First word falls through'}

# The template's blocks for a first word that falls through; the blocks in the template are for registered reads.
FALLS_THROUGH = {
    'fetch signals': [
        'signal has_next        : std_logic; -- the memory holds a word behind the one that is shown',
    ],
    'fetch': [
        '-- The read register of the memory is the first word: it is filled as soon as it is free.',
        'fetch <= has_next and (is_empty or rd_en);',
        '',
        'show : process (clk)',
        'begin',
        '  if rising_edge(clk) then',
        '    if reset = \'1\' then',
        '      is_empty <= \'1\';',
        '      has_next <= \'0\';',
        '    else',
        '      if fetch = \'1\' then',
        '        is_empty <= \'0\';',
        '      elsif rd_en = \'1\' then',
        '        is_empty <= \'1\';',
        '      end if;',
        '      if write = \'1\' then',
        '        has_next <= \'1\';',
        '      elsif fetch = \'1\' then',
        '        has_next <= to_level(words > 2);',
        '      end if;',
        '    end if;',
        '  end if;',
        'end process show;',
    ],
}

# The template's blocks for a depth that is a power of two.
POWER_OF_TWO = {
    'wrap signals': [],
    'indices': [
        'indices : process (clk)',
        'begin',
        '  if rising_edge(clk) then',
        '    if reset = \'1\' then',
        '      write_index <= 0;',
        '    elsif write = \'1\' then',
        '      write_index <= (write_index + 1) mod DEPTH;',
        '    end if;',
        '    if reset = \'1\' then',
        '      read_index <= 0;',
        '    elsif fetch = \'1\' then',
        '      read_index <= (read_index + 1) mod DEPTH;',
        '    end if;',
        '  end if;',
        'end process indices;',
    ],
}

# The bench's blocks for a first word that falls through.
FALLS_THROUGH_BENCH = {
    'own signals': [],
    'own ports': [],
    'own outputs': [
        '-- A word needs a clock more than its number to get to the output.',
        'is_shown := count > 0 and not (count = 1 and is_fresh);',
        'compare("empty", (0 => empty), (0 => level_of(not is_shown)));',
        'if is_shown then',
        '  compare("rd_data", rd_data, word(queue(first)));',
        'end if;',
    ],
}


class Fifo(FormDesign):
    """A FIFO of one clock described by the argument dictionary."""

    def __init__(self, argDict):
        self.arguments = dict((key, printableText(value)) for key, value in argDict.items())
        self.entityName = self.arguments['%%ENTITY_NAME%%']
        self.width = int(self.arguments['%%WIDTH%%'])
        self.depth = int(self.arguments['%%DEPTH%%'])
        self.levelWidth = self.depth.bit_length()
        self.almostFull = int(self.arguments['%%ALMOST_FULL%%'])
        self.almostEmpty = int(self.arguments['%%ALMOST_EMPTY%%'])
        self.readMode = READ_MODES[self.arguments['%%READ_MODE%%']]
        self.fallsThrough = self.readMode == READ_MODES['falls_through']

    def faults(self):
        usedNames = interfaceIdentifiers(TEMPLATES[TEMPLATE]) - set([DEFAULT_ENTITY])
        problem = entityNameProblem('Entity name', self.entityName, [self.entityName], usedNames)
        faults = [(problem, ['Entity'])] if problem else []
        if self.almostFull > self.depth:
            faults.append(('Almost full from %d is never reached by a FIFO of %d words: enter %d at most, or raise Depth.'
                           % (self.almostFull, self.depth, self.depth), ['AlmostFull', 'Depth']))
        if self.almostEmpty >= self.depth:
            faults.append(('Almost empty up to %d is always reached by a FIFO of %d words: enter %d at most, or raise Depth.'
                           % (self.almostEmpty, self.depth, self.depth - 1), ['AlmostEmpty', 'Depth']))
        return faults

    def facts(self):
        return [
            ('Depth', self.depth, 'words'),
            ('Word width', self.width, 'bits'),
            ('Memory', self.depth * self.width, 'bits'),
            ('Read mode', self.readMode, ''),
            ('Latency', 2, 'clocks'),
            ('Level width', self.levelWidth, 'bits'),
        ]

    def advice(self):
        if self.depth & (self.depth - 1) == 0:
            return []
        return ['Depth: memory blocks come in powers of two, so %d words may take the place of %d.'
                % (self.depth, 2 ** self.levelWidth)]

    def headerEntries(self):
        return [
            ('IP', 'Synchronous FIFO'),
            ('Entity', self.entityName),
            ('Generator', SCRIPT_VERSION),
            ('Application', self.arguments['%%APPLICATION%%']),
            ('Date', self.arguments['%%DATE%%']),
            ('Word width', self.width),
            ('Depth', self.depth),
            ('Read mode', self.readMode),
            ('Almost full from', self.almostFull),
            ('Almost empty up to', self.almostEmpty),
        ]

    def ports(self):
        readComment = 'oldest word while empty is 0' if self.fallsThrough else 'word taken, one clock later'
        ports = [
            ('clk', 'in', None, 'clock of both sides'),
            ('reset', 'in', None, 'synchronous, active high'),
            ('wr_en', 'in', None, 'puts wr_data in unless full'),
            ('wr_data', 'in', self.width, 'word to put in'),
            ('full', 'out', None, 'wr_en is ignored'),
            ('almost_full', 'out', None, 'level is %d or more' % self.almostFull),
            ('rd_en', 'in', None, 'takes the oldest word unless empty'),
            ('rd_data', 'out', self.width, readComment),
            ('empty', 'out', None, 'rd_en is ignored'),
            ('almost_empty', 'out', None, 'level is %d or less' % self.almostEmpty),
            ('level', 'out', self.levelWidth, 'words inside'),
        ]
        if not self.fallsThrough:
            insertPort(ports, 'rd_data', ('rd_valid', 'out', None, 'a word was taken one clock ago'))
        return ports

    def designText(self):
        blocks = {
            'ports': portLines(self.ports()),
            'constants': constantLines([
                ('WORD_WIDTH', 'integer', self.width, 'bits of a word'),
                ('DEPTH', 'integer', self.depth, 'words'),
                ('LEVEL_WIDTH', 'integer', self.levelWidth, 'bits of a number of words'),
                ('ALMOST_FULL_FROM', 'integer', self.almostFull, 'words'),
                ('ALMOST_EMPTY_UPTO', 'integer', self.almostEmpty, 'words'),
            ]),
        }
        if self.fallsThrough:
            blocks.update(FALLS_THROUGH)
        if self.depth & (self.depth - 1) == 0:
            blocks.update(POWER_OF_TWO)
        return renameEntity(fillBlocks(TEMPLATES[TEMPLATE], blocks), DEFAULT_ENTITY, self.entityName)

    def bench(self):
        return benchText(self, TEMPLATES[BENCH_TEMPLATE], DEFAULT_ENTITY, {
            'WORD_BITS': self.width,
            'CAPACITY': self.depth,
            'LEVEL_BITS': self.levelWidth,
            'ALMOST_FULL_AT': self.almostFull,
            'ALMOST_EMPTY_AT': self.almostEmpty,
        }, FALLS_THROUGH_BENCH if self.fallsThrough else {})


def generate(argDict):
    return Fifo(argDict).generate()


def describe(argDict):
    return Fifo(argDict).describe()


def check(argDict):
    return Fifo(argDict).faults()


def testBench(argDict):
    return Fifo(argDict).bench()
