# The test bench of a filter. Its model is the description page's: what the design is made of plays no part in it.


def firTestBench(design):
    """VHDL text of the bench for a filter, whose ports tell what there is to be driven and compared."""
    names = [name for name, _, _, _ in design.ports()]
    ports = dict((name, width) for name, _, width, _ in design.ports())
    text = keepBlocks(SHARED_TEMPLATES['default_fir_tb.vhd'], {
        'handshake': 'din_ready' in ports,
        'no handshake': 'din_ready' not in ports,
        'channels': 'din_channel' in ports,
        'single channel': 'din_channel' not in ports,
        'auxiliary clock': 'clk_aux1' in ports,
        'coefficient port': 'coefs' in ports,
        'half port': 'coefs' in ports and ports['coefs'] < design.tapCount * design.coefficientWidth,
        'constant coefficients': 'coefs' not in ports,
        'saturation': design.hasSaturation,
    })
    constants = {
        'INPUT_WIDTH': design.inputWidth,
        'OUTPUT_WIDTH': design.outputWidth,
        'COEFFICIENT_WIDTH': design.coefficientWidth,
        'TRUNCATED_BITS': design.truncatedBits,
        'TAP_COUNT': design.tapCount,
        'SUM_WIDTH': max(design.inputWidth + design.coefficientWidth + ceilingLog2(design.tapCount), design.outputWidth),
        'LATENCY': design.latency(),
        'ROUND_COUNT': benchRounds(design.tapCount, 'coefs' in ports),
    }
    blocks = {'port map': benchPortMap(names)}
    if 'din_ready' in ports:
        clocks = design.clocksPerSample()
        constants['CLOCKS_PER_SAMPLE'] = clocks
        constants['CLEARING_CLOCKS'] = clocks if clocks > 1 else 0
    if 'clk_aux1' in ports:
        constants['PATTERN'] = '"%s"' % design.auxiliaryPattern
    if 'coefs' in ports:
        constants['PORT_WIDTH'] = ports['coefs']
    else:
        blocks['coefficient list'] = benchCoefficientLines(design)
    text = setConstants(fillBlocks(text, blocks), constants)
    header = headerComment([
        ('Test bench of', design.entityName),
        ('Generator', FIR_SCRIPT_VERSION),
        ('Application', design.application),
        ('Date', design.date),
    ])
    return (header + '\n' + renameEntity(text, 'default_fir', design.entityName)).rstrip('\n')


def benchRounds(tapCount, hasInputCoefficients):
    """As many as a few seconds of simulation allow. A coefficient port needs three, each with a list of its own."""
    products = 2 * tapCount * (3 * tapCount + 150)
    return max(3 if hasInputCoefficients else 1, min(2, 60000 // products))


def benchPortMap(names):
    width = max(len(name) for name in names)
    lines = ['%s => %s,' % (name.ljust(width), name) for name in names]
    return lines[:-1] + [lines[-1][:-1]]


def benchCoefficientLines(design):
    """The literals as they were given; taps without one have the coefficient zero."""
    elements = ['used(%s),' % coefficient.text for coefficient in design.coefficients]
    comments = ['h[%d] = %d' % (tap, coefficient.value) for tap, coefficient in enumerate(design.coefficients)]
    if len(elements) < design.tapCount:
        elements.append("others => (others => '0'),")
        comments.append('')
    elements[-1] = elements[-1][:-1]
    return ['constant h : coefficient_list := ('] + indented(withComments(elements, comments)) + [');']
