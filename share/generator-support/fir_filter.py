# What the generators of all FIR filters have in common: arguments, reports, header, ports and widths.

FIR_SCRIPT_VERSION = '1.1.0'


class FirFilter(Design):
    """A filter described by the argument dictionary; each kind derives from it.

    A kind has the attributes ipName and structure, which the header shows, and the methods that raise
    NotImplementedError here.
    """

    hasSaturation = False

    def __init__(self, argDict):
        arguments = dict((key, printableText(value)) for key, value in argDict.items())
        self.entityName = arguments['%%ENTITY_NAME%%']
        self.application = arguments['%%APPLICATION%%']
        self.date = arguments['%%DATE%%']
        self.inputWidth = int(arguments['%%INPUT_DATA_WIDTH%%'])
        self.outputWidth = int(arguments['%%OUTPUT_DATA_WIDTH%%'])
        self.coefficientWidth = int(arguments['%%COEF_WIDTH%%'])
        self.truncatedBits = int(arguments['%%TO_BE_TRUNCATED%%'])
        self.tapCount = int(arguments['%%N_TAPS%%'])
        self.readCoefficients(arguments)

    def readCoefficients(self, arguments):
        """Reads what is particular to the kind, the list 'coefficients' above all."""
        raise NotImplementedError

    def generate(self):
        """The text of a filter ends with a line feed of its own."""
        return Design.generate(self) + '\n'

    def testBench(self):
        return self.refusal() or firTestBench(self)

    def problems(self):
        return self.nameProblems() + self.coefficientProblems()

    def coefficientProblems(self):
        """Problems of the coefficients and their number."""
        raise NotImplementedError

    def remarks(self):
        return coefficientRemarks(self.coefficients)

    def latency(self):
        """Clocks from the edge that takes a sample to the edge that sees its result."""
        raise NotImplementedError

    def throughput(self):
        return '1 sample per clock'

    def clocksPerSample(self):
        return 1

    def multiplierCount(self):
        """Multipliers of the architecture."""
        raise NotImplementedError

    def reachedWidth(self):
        """Bits of the smallest two's complement that holds every sum of products."""
        raise NotImplementedError

    def sumWidth(self):
        """Bits of the sums of products in the text."""
        raise NotImplementedError

    def needsLimits(self):
        """Whether a result can lie beyond the output's range and is to be limited."""
        return False

    def canWrap(self):
        return self.reachedWidth() > self.truncatedBits + self.outputWidth and not self.needsLimits()

    def facts(self):
        return [
            ('Taps', self.tapCount, ''),
            ('Multipliers', self.multiplierCount(), ''),
            ('Latency', self.latency(), 'clocks'),
            ('Sum width', self.reachedWidth(), 'bits'),
            ('Clocks per sample', self.clocksPerSample(), 'clocks'),
            ('Output bits', '%d downto %d' % (self.highestOutputBit(), self.truncatedBits), ''),
            ('Can wrap', 'yes' if self.canWrap() else 'no', ''),
        ] + self.gainFacts()

    def gainFacts(self):
        return [('DC gain', sum(coefficient.value for coefficient in self.coefficients), '')]

    def highestOutputBit(self):
        """The highest bit of the sum that leaves the filter."""
        return self.truncatedBits + self.outputWidth - 1

    def advice(self):
        if not self.canWrap():
            return []
        return ['Output Data width: results can wrap, as sums have up to %d bits and the highest bit that leaves is %d'
                % (self.reachedWidth(), self.highestOutputBit())]

    def nameProblems(self):
        problem = entityNameProblem('Entity name', self.entityName, [self.entityName], ())
        if problem is None:
            return []
        return [problem if self.entityName in problem else '%s It is "%s".' % (problem, self.entityName)]

    def headerEntries(self):
        return [
            ('IP', '%s (%s)' % (self.ipName, self.structure)),
            ('Entity', self.entityName),
            ('Generator', FIR_SCRIPT_VERSION),
            ('Application', self.application),
            ('Date', self.date),
            ('Input Data width', self.inputWidth),
            ('Output Data width', self.outputWidth),
            ('Coefficient width', self.coefficientWidth),
            ('LSB To Be Truncated', self.truncatedBits),
        ] + self.kindEntries() + [
            ('Latency', '%d clocks' % self.latency()),
            ('Throughput', self.throughput()),
        ] + self.coefficientEntries()

    def kindEntries(self):
        """Header entries of the parameters that not all kinds have."""
        raise NotImplementedError

    def coefficientEntries(self):
        """Header entries of the coefficients, one for each tap."""
        return [('Coefficient %d' % tap, coefficient) for tap, coefficient in enumerate(self.coefficients)]

    def ports(self):
        """(name, direction, width or None for a single bit, comment or '') of each port."""
        return [
            ('clk', 'in', None, ''),
            ('rst', 'in', None, 'synchronous, active high'),
            ('din_valid', 'in', None, 'din holds a sample'),
            ('din', 'in', self.inputWidth, 'sample, signed'),
            ('dout_valid', 'out', None, 'dout holds a result'),
            ('dout', 'out', self.outputWidth, 'result, signed'),
        ]

    def constants(self):
        """Values of the template's constants that all kinds share."""
        sumWidth = self.sumWidth()
        return {
            'INPUT_WIDTH': self.inputWidth,
            'OUTPUT_WIDTH': self.outputWidth,
            'COEFFICIENT_WIDTH': self.coefficientWidth,
            'TRUNCATED_BITS': self.truncatedBits,
            'SUM_WIDTH': sumWidth,
            'FULL_WIDTH': max(sumWidth, self.truncatedBits + self.outputWidth),
        }
