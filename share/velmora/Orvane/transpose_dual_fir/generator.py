# Generator of the IP "Transpose dual".


class TransposeDualFir(StreamingFir):
    ipName = 'Transpose dual'
    structure = 'transposed FIR filter for two channels'
    templateName = 'transpose_dual_fir.vhd'

    def latency(self):
        return 3

    def throughput(self):
        return '1 sample per clock, 1 per 2 clocks and channel'

    def ports(self):
        ports = StreamingFir.ports(self)
        insertPort(ports, 'din', ('din_channel', 'out', None, 'channel of the next sample'))
        return ports + [('dout_channel', 'out', None, 'channel of the result')]


def generate(argDict):
    return TransposeDualFir(argDict).generate()


def describe(argDict):
    return TransposeDualFir(argDict).describe()


def testBench(argDict):
    return TransposeDualFir(argDict).testBench()
