# What the generators of both scopes have in common: reading the arguments, the header, constants, ports and output.

SCOPE_SCRIPT_VERSION = '1.0.0'


class ScopeDesign(Design):
    """A scope described by the argument dictionary; each kind derives from it.

    A kind has the attributes ipName, templateName and sampleWidth and the methods that raise NotImplementedError here.
    """

    def __init__(self, argDict):
        self.arguments = dict((key, printableText(value)) for key, value in argDict.items())
        self.entityName = self.arguments['%%ENTITY_NAME%%']
        self.captureDepth = self.number('CAPTURE_DEPTH')
        self.captureWidth = self.number('CAPTURE_WIDTH')
        self.inputLineCount = self.number('INPUT_LINE_COUNT')
        self.triggerLineCount = self.number('TRIGGER_LINE_COUNT')
        self.preTriggerSamples = self.number('PRE_TRIGGER_SAMPLES')

    def number(self, key):
        return int(self.arguments['%%' + key + '%%'])

    def problems(self):
        """At most one sentence. Names inside the architecture may be the entity's name, those outside may not."""
        usedNames = interfaceIdentifiers(self.template()) - set([self.defaultName(), self.defaultName() + '_pkg'])
        unitNames = [self.entityName, self.entityName + '_pkg']
        problem = entityNameProblem('Entity name', self.entityName, unitNames, usedNames)
        return [problem] if problem else []

    def facts(self):
        return [
            ('Samples', self.captureDepth, ''),
            ('Sample width', self.sampleWidth, 'bits'),
            ('Memory', self.captureDepth * self.sampleWidth, 'bits'),
            ('Trigger lines', self.triggerLineCount, ''),
        ]

    def parameterEntries(self):
        """(label, value) pairs of the parameters."""
        raise NotImplementedError

    def constants(self):
        """(name, type, value, comment) of the package's constants of type integer, boolean and string."""
        raise NotImplementedError

    def ports(self):
        """(name, direction, width or None for a single bit, comment) of the ports."""
        raise NotImplementedError

    def blocks(self):
        """Lines of the template's further blocks by their names."""
        raise NotImplementedError

    def template(self):
        return TEMPLATES[self.templateName]

    def defaultName(self):
        return self.templateName[:-len('.vhd')]

    def headerEntries(self):
        return [
            ('IP', self.ipName),
            ('Entity', self.entityName),
            ('Generator', SCOPE_SCRIPT_VERSION),
            ('Application', self.arguments['%%APPLICATION%%']),
            ('Date', self.arguments['%%DATE%%']),
        ] + self.parameterEntries()

    def designText(self):
        blocks = dict(self.blocks(), constants=constantLines(self.constants()), ports=portLines(self.ports()))
        if self.captureDepth != 2 ** self.captureWidth:
            blocks['place in the memory'] = placeLines(self.captureDepth)
        return renameEntity(fillBlocks(self.template(), blocks), self.defaultName(), self.entityName)

    def clockAndInputPorts(self, resetComment):
        return [
            ('clk', 'in', None, 'clock of sampling and readout'),
            ('reset', 'in', None, resetComment),
            ('data_in', 'in', self.inputLineCount, 'lines to record'),
            ('trig_in', 'in', self.triggerLineCount, 'lines to trigger on'),
        ]

    def readPorts(self, addressComment, sampleWidth):
        return [
            ('rd_addr', 'in', self.captureWidth, addressComment),
            ('rd_data', 'out', sampleWidth, 'that sample, two clocks later'),
        ]

    def captureConstants(self):
        return [
            ('CAPTURE_DEPTH', 'integer', self.captureDepth, 'samples in the memory'),
            ('CAPTURE_WIDTH', 'integer', self.captureWidth, 'bits of a sample number'),
            ('INPUT_LINE_COUNT', 'integer', self.inputLineCount, 'lines to record'),
            ('TRIGGER_LINE_COUNT', 'integer', self.triggerLineCount, 'lines to trigger on'),
            ('PRE_TRIGGER_SAMPLES', 'integer', self.preTriggerSamples, 'samples in front of the trigger'),
        ]


def placeLines(captureDepth):
    """VHDL lines of the function 'place' for a depth that is no power of two."""
    blockSize = captureDepth & -captureDepth
    return [
        '-- The memory is a ring of blocks: the number of a block alone tells whether the end is passed.',
        'constant BLOCK_SIZE  : integer := %d;' % blockSize,
        'constant BLOCK_COUNT : integer := CAPTURE_DEPTH / BLOCK_SIZE;',
        '',
        'function place(number : natural) return index_t is',
        'begin',
        '  for block_number in BLOCK_COUNT to 3 * BLOCK_COUNT - 1 loop',
        '    if number / BLOCK_SIZE = block_number then',
        '      return (block_number mod BLOCK_COUNT) * BLOCK_SIZE + number mod BLOCK_SIZE;',
        '    end if;',
        '  end loop;',
        '  return number;',
        'end function;',
    ]


def constantLines(constants):
    """VHDL lines of constants given as (name, type, value, comment), in columns."""
    nameWidth = max(len(name) for name, _, _, _ in constants)
    typeWidth = max(len(typeName) for _, typeName, _, _ in constants)
    declarations = ['constant %s : %s := %s;' % (name.ljust(nameWidth), typeName.ljust(typeWidth), value)
                    for name, typeName, value, _ in constants]
    return withComments(declarations, [comment for _, _, _, comment in constants])
