# Generator of the IP "Transpose symmetric".


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

    def multiplierCount(self):
        return self.tapCount // 2

    def productWidth(self):
        return StreamingFir.productWidth(self) + 1

    def tapsOfMultiplier(self, index):
        return 'taps %d and %d' % (index, self.tapCount - 1 - index)


def generate(argDict):
    return TransposeSymmetricFir(argDict).generate()
