# What the generators of the filters that take a sample at every clock have in common.


class StreamingFir(FirFilter):
    """A filter whose coefficients are constants or come from a port."""

    def readCoefficients(self, arguments):
        self.hasInputCoefficients = arguments['%%COEF_ARE_INPUT_SIGNALS%%'].lower() == 'true'
        aggregate = '' if self.hasInputCoefficients else arguments['%%COEFS_PKG_HEXA_CONSTANT%%']
        self.coefficients = firCoefficients(aggregate, self.coefficientWidth)

    def coefficientProblems(self):
        if self.hasInputCoefficients:
            return []
        problems = literalProblems(self.coefficients)
        if self.coefficients and len(self.coefficients) != self.tapCount:
            problems.append('Coefficients: %d given for a filter of %d taps, enter one for each tap.'
                            % (len(self.coefficients), self.tapCount))
        return problems

    def multiplierCount(self):
        return self.tapCount

    def productWidth(self):
        return self.inputWidth + self.coefficientWidth

    def reachedWidth(self):
        if self.hasInputCoefficients:
            return self.inputWidth + self.coefficientWidth + ceilingLog2(self.tapCount)
        return widthOfSum([coefficient.value for coefficient in self.coefficients], self.inputWidth)

    def sumWidth(self):
        """Bits of the sums: what they can reach, but no more than the output shows, and no less than a product."""
        return max(self.productWidth(), min(self.reachedWidth(), self.truncatedBits + self.outputWidth))

    def gainFacts(self):
        return [] if self.hasInputCoefficients else FirFilter.gainFacts(self)

    def kindEntries(self):
        mode = 'Input' if self.hasInputCoefficients else 'Constant'
        return [('Coefficient mode', mode), ('Coefficient count', self.tapCount)]

    def coefficientEntries(self):
        if not self.hasInputCoefficients:
            return FirFilter.coefficientEntries(self)
        return [('Coefficient k', 'bits (k+1)*%d-1 .. k*%d of coefs, k = 0 to %d'
                 % (self.coefficientWidth, self.coefficientWidth, self.multiplierCount() - 1))]

    def ports(self):
        ports = FirFilter.ports(self)
        if self.hasInputCoefficients:
            insertPort(ports, 'din', ('coefs', 'in', self.multiplierCount() * self.coefficientWidth,
                                      'coefficients, signed; they change only while rst is 1'))
        return ports

    def tapsOfMultiplier(self, index):
        """What the comment behind a coefficient says about its place."""
        return 'tap %d' % index

    def coefficientLines(self):
        if self.hasInputCoefficients:
            return ["signal coefficients : coefficient_list_t := (others => (others => '0'));"]
        values = [coefficient.value for coefficient in self.coefficients[:self.multiplierCount()]]
        comments = ['%s: %d' % (self.tapsOfMultiplier(index), value) for index, value in enumerate(values)]
        return ['constant coefficients : coefficient_list_t := ('] + indented(
            coefficientElements(values, self.coefficientWidth, comments)) + [');']

    def coefficientInputLines(self):
        if not self.hasInputCoefficients:
            return []
        return [
            'coefficient_input : process (clk)',
            'begin',
            '  if rising_edge(clk) then',
            '    for index in coefficients\'range loop',
            '      coefficients(index) <=',
            '        signed(coefs((index + 1) * COEFFICIENT_WIDTH - 1 downto index * COEFFICIENT_WIDTH));',
            '    end loop;',
            '  end if;',
            'end process coefficient_input;',
        ]

    def blocks(self):
        """Lines of the template's blocks by their names."""
        return {
            'ports': portLines(self.ports()),
            'coefficients': self.coefficientLines(),
            'coefficient input': self.coefficientInputLines(),
        }

    def designText(self):
        text = fillBlocks(filterTemplate(self.templateName, self.entityName), self.blocks())
        return setConstants(text, dict(self.constants(), TAP_COUNT=self.tapCount))
