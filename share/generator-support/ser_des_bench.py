# The test bench of the SER/DES interface.

SER_DES_BENCH_TEMPLATE = 'ser_des_tb.vhd'
SER_DES_BENCH_NAME = 'ser_des'


def serDesBench(serDes):
    """The test bench of an instance of the class SerDes; the template's blocks of a side without lines are left out."""
    template = TEMPLATES[SER_DES_BENCH_TEMPLATE]
    absent = [side.lower() for side in ('SER', 'DES') if not serDes.counts[side]]
    names = re.findall(r'(?m)^ *-- begin ((?:%s) [a-z ]+)$' % '|'.join(absent), template) if absent else []
    return benchText(serDes, template, SER_DES_BENCH_NAME, {
        'WORD_SIZE': serDes.dataSize,
        'SERIALISERS': serDes.counts['SER'],
        'DESERIALISERS': serDes.counts['DES'],
        'SER_TRAINING_VALUE': literal(serDes.trainings['SER']),
        'DES_TRAINING_VALUE': literal(serDes.trainings['DES']),
    }, dict((name, []) for name in names))
