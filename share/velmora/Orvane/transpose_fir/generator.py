# Generator of the IP "Transpose".


class TransposeFir(StreamingFir):
    ipName = 'Transpose'
    structure = 'transposed FIR filter'
    templateName = 'transpose_fir.vhd'

    def latency(self):
        return 3

    def blocks(self):
        blocks = StreamingFir.blocks(self)
        if self.hasInputCoefficients:
            # Where products are made of look-up tables the first factor drives more of them: not the sample of all taps.
            blocks['product'] = ['products(tap) <= coefficient * sample;']
        return blocks


def generate(argDict):
    return TransposeFir(argDict).generate()


def describe(argDict):
    return TransposeFir(argDict).describe()


def testBench(argDict):
    return TransposeFir(argDict).testBench()
