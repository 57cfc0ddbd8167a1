# Generator of the IP "Transpose symmetric".


# The shorter side of common DSP blocks.
BLOCK_WIDTH = 18


class TransposeSymmetricFir(StreamingFir):
    ipName = 'Transpose symmetric'
    structure = 'transposed FIR filter with symmetric coefficients'
    templateName = 'transpose_symmetric_fir.vhd'

    def latency(self):
        return 4

    def coefficientProblems(self):
        problems = StreamingFir.coefficientProblems(self)
        if self.tapCount % 2:
            problems.append('Coefficient count: a symmetric filter of %d taps has no pairs, make the count even.'
                            % self.tapCount)
        elif len(self.coefficients) == self.tapCount and all(each.isLiteral for each in self.coefficients):
            problem = asymmetryProblem(self.coefficients)
            problems += [problem] if problem else []
        return problems

    def remarks(self):
        return StreamingFir.remarks(self) + self.blockRemarks()

    def blockRemarks(self):
        """Why a pair of taps takes more than one DSP block of the common sizes, whose pre-adder is on the longer side."""
        if self.coefficientWidth > BLOCK_WIDTH:
            return ['Coefficient width: with %d bits a pair of taps fits no DSP block of 25 x 18 or 18 x 18 bits, %d would fit'
                    % (self.coefficientWidth, BLOCK_WIDTH)]
        if self.inputWidth >= BLOCK_WIDTH:
            return ['Input Data width: with %d bits a pair of taps fits a DSP block of 25 x 18 bits, but none of 18 x 18 bits'
                    % self.inputWidth]
        return []

    def multiplierCount(self):
        return self.tapCount // 2

    def productWidth(self):
        return StreamingFir.productWidth(self) + 1

    def tapsOfMultiplier(self, index):
        return 'taps %d and %d' % (index, self.tapCount - 1 - index)


def generate(argDict):
    return TransposeSymmetricFir(argDict).generate()


def describe(argDict):
    return TransposeSymmetricFir(argDict).describe()


def testBench(argDict):
    return TransposeSymmetricFir(argDict).testBench()
