# Generator of the IP "Systolic".


class SystolicFir(StreamingFir):
    ipName = 'Systolic'
    structure = 'systolic FIR filter'
    templateName = 'systolic_fir.vhd'

    def latency(self):
        return self.tapCount + 2


def generate(argDict):
    return SystolicFir(argDict).generate()


def describe(argDict):
    return SystolicFir(argDict).describe()


def testBench(argDict):
    return SystolicFir(argDict).testBench()
