# Generator of the IP "Mac fir".


class MacFir(FirFilter):
    """Filter of 'unitCount' multipliers, each of which serves 'stepCount' taps in turn."""

    ipName = 'Mac fir'
    structure = 'multiply-accumulate FIR filter'

    def readCoefficients(self, arguments):
        self.dspCount = int(arguments['%%DSP_COUNT%%'])
        self.hasSaturation = arguments['%%SATURATION_STAGE%%'].lower() == 'true'
        self.auxiliaryPattern = arguments['%%CLK_AUX1_PATTERN%%']
        self.coefficients = firCoefficients(arguments['%%COEFS%%'], self.coefficientWidth)
        self.stepCount = ceilingQuotient(self.tapCount, self.dspCount)
        self.unitCount = ceilingQuotient(self.tapCount, self.stepCount)
        self.treeLevels = ceilingLog2(self.unitCount)

    def coefficientProblems(self):
        problems = literalProblems(self.coefficients)
        if len(self.coefficients) > self.tapCount:
            problems.append('Tap count: %d is less than the %d coefficients given, enter at least %d.'
                            % (self.tapCount, len(self.coefficients), len(self.coefficients)))
        return problems

    def remarks(self):
        remarks = FirFilter.remarks(self)
        missing = self.tapCount - len(self.coefficients)
        if missing:
            remarks.append('Coefficients: %d given for %d taps, zero for the rest' % (len(self.coefficients), self.tapCount))
        if self.unitCount < self.dspCount:
            remarks.append('DSP count: %d of %d are used, the others would not make the filter faster'
                           % (self.unitCount, self.dspCount))
        return remarks

    def isParallel(self):
        """Whether each tap has a multiplier of its own, so that nothing is stored and no units are to be summed up."""
        return self.stepCount == 1

    def latency(self):
        return 4 if self.isParallel() else self.stepCount + self.treeLevels + 5

    def throughput(self):
        return FirFilter.throughput(self) if self.isParallel() else '1 sample per %d clocks' % self.stepCount

    def sumWidth(self):
        """Bits of the sums: what they can reach, but no more than an output that wraps shows, and no less than a product."""
        width = self.reachedWidth()
        if not self.needsLimits():
            width = min(width, self.truncatedBits + self.outputWidth)
        return max(self.inputWidth + self.coefficientWidth, width)

    def clocksPerSample(self):
        return self.stepCount

    def multiplierCount(self):
        return self.unitCount

    def reachedWidth(self):
        return widthOfSum([coefficient.value for coefficient in self.coefficients], self.inputWidth)

    def needsLimits(self):
        return self.hasSaturation and self.reachedWidth() > self.truncatedBits + self.outputWidth

    def kindEntries(self):
        saturation = 'Enable' if self.hasSaturation else 'Disable'
        if self.hasSaturation and not self.needsLimits():
            saturation += ' (but every result fits)'
        return [
            ('Tap count', self.tapCount),
            ('DSP count', '%d, %d used' % (self.dspCount, self.unitCount)),
            ('Saturation stage', saturation),
            ('Auxiliary clock WFG pattern', self.auxiliaryPattern),
        ]

    def coefficientEntries(self):
        missing = range(len(self.coefficients), self.tapCount)
        return FirFilter.coefficientEntries(self) + [('Coefficient %d' % tap, 'not given = 0') for tap in missing]

    def ports(self):
        ports = FirFilter.ports(self)
        insertPort(ports, 'din_valid', ('din_ready', 'out', None, 'a sample is taken while din_valid is 1'))
        return ports + [('clk_aux1', 'out', None, 'auxiliary clock')]

    def designText(self):
        blocks = {'ports': portLines(self.ports()), 'coefficients': self.coefficientLines()}
        constants = dict(self.constants(), UNIT_COUNT=self.unitCount, AUX_PATTERN='"%s"' % self.auxiliaryPattern)
        if not self.isParallel():
            blocks.update({'tree signals': self.treeSignalLines(), 'adder tree': self.adderTreeLines()})
            constants.update(STEP_COUNT=self.stepCount, TREE_LEVELS=self.treeLevels)
        if not self.needsLimits():
            blocks['output stage'] = UNLIMITED_OUTPUT_STAGE
        templateName = 'mac_fir_parallel.vhd' if self.isParallel() else 'mac_fir.vhd'
        return setConstants(fillBlocks(filterTemplate(templateName, self.entityName), blocks), constants)

    def coefficientLines(self):
        taps = range(self.unitCount * self.stepCount)
        comments = [self.tapComment(tap) for tap in taps]
        values = [self.tapValue(tap) for tap in taps]
        if self.isParallel():
            return ['constant coefficients : coefficient_list_t := ('] + indented(
                coefficientElements(values, self.coefficientWidth, comments)) + [');']
        lines = []
        for unit in range(self.unitCount):
            own = slice(unit * self.stepCount, (unit + 1) * self.stepCount)
            lines.append('%d => (' % unit)
            lines += indented(coefficientElements(values[own], self.coefficientWidth, comments[own]))
            lines.append('),')
        lines[-1] = ')'
        return ['constant coefficients : coefficient_table_t := ('] + indented(lines) + [');']

    def tapValue(self, tap):
        return self.coefficients[tap].value if tap < len(self.coefficients) else 0

    def tapComment(self, tap):
        return 'tap %d: %d' % (tap, self.tapValue(tap)) if tap < self.tapCount else 'no tap'

    def treeWidths(self):
        """Sums of each level of the adder tree, the units' own sums first."""
        widths = [self.unitCount]
        while widths[-1] > 1:
            widths.append(ceilingQuotient(widths[-1], 2))
        return widths

    def treeSignalLines(self):
        return ["signal level_%d : sum_list_t(0 to %d) := (others => (others => '0'));" % (level, width - 1)
                for level, width in enumerate(self.treeWidths()) if level > 0]

    def adderTreeLines(self):
        widths = self.treeWidths()
        names = ['unit_sums'] + ['level_%d' % level for level in range(1, len(widths))]
        total = 'total <= resize(%s(0), FULL_WIDTH);' % names[-1]
        if len(widths) == 1:
            return [total]
        sums = []
        for level in range(1, len(widths)):
            for target in range(widths[level]):
                operands = ['%s(%d)' % (names[level - 1], source)
                            for source in (2 * target, 2 * target + 1) if source < widths[level - 1]]
                sums.append('%s(%d) <= %s;' % (names[level], target, ' + '.join(operands)))
        return [
            'adder_tree : process (clk)',
            'begin',
            '  if rising_edge(clk) then',
        ] + ['    ' + line for line in sums] + [
            '  end if;',
            'end process adder_tree;',
            '',
            total,
        ]


UNLIMITED_OUTPUT_STAGE = [
    'output_stage : process (clk)',
    'begin',
    '  if rising_edge(clk) then',
    '    result <= total(OUTPUT_MSB downto TRUNCATED_BITS);',
    '  end if;',
    'end process output_stage;',
]


def ceilingQuotient(dividend, divisor):
    return -(-dividend // divisor)


def generate(argDict):
    return MacFir(argDict).generate()


def describe(argDict):
    return MacFir(argDict).describe()


def testBench(argDict):
    return MacFir(argDict).testBench()
