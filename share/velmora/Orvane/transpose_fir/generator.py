# Generator of the IP "Transpose".


class TransposeFir(StreamingFir):
    ipName = 'Transpose'
    structure = 'transposed FIR filter'
    templateName = 'transpose_fir.vhd'

    def latency(self):
        return 3


def generate(argDict):
    return TransposeFir(argDict).generate()


def describe(argDict):
    return TransposeFir(argDict).describe()


def testBench(argDict):
    return TransposeFir(argDict).testBench()
