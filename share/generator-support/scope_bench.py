# The test benches of both scopes: one template, which is the bench of a scope called probe.

SCOPE_BENCH_TEMPLATE = 'probe_tb.vhd'
SCOPE_BENCH_NAME = 'probe'

# Letters of the bench for what a trigger line has to show in the form.
TRIGGER_LETTERS = {'Ignore': '-', 'Rising edge': 'R', 'Falling edge': 'F', 'Both edges': 'B', '0': '0', '1': '1'}

# The template's blocks for a scope that starts by its reset and is never armed.
STARTUP_BENCH = {
    'own signals': ['signal first_valid : address_t;'],
    'own ports': ['first_valid   => first_valid,'],
    'own state': [
        'variable first_address : natural := 0; -- of the samples that were taken',
        'variable was_reset     : boolean := true;',
    ],
    'own output': [
        'if was_reset then',
        '  compare("first_valid", first_valid, address_t\'(others => \'0\'));',
        'elsif shown.is_done then',
        '  compare("first_valid", first_valid, std_logic_vector(to_unsigned(first_address, ADDRESS_BITS)));',
        'end if;',
    ],
    'forced': [],
    'own trigger': [
        'first_address := 0;',
        'if taken < SAMPLES_BEFORE then',
        '  first_address := SAMPLES_BEFORE - taken;',
        'end if;',
    ],
    'readable': ['has_answer(1) := was_done and shown.is_done and asked(1) >= first_address and asked(1) < DEPTH;'],
    'starting': [
        'if was_reset and reset = \'0\' then',
        '  start_capture; -- with the sample of this edge',
        'end if;',
        "was_reset := reset = '1';",
    ],
    'armed': [],
    'own inputs': [],
    'start': ['reset_clocks(1 + random(3));'],
}


def captureBenchText(design, constants, blocks):
    constants = dict(constants, **{
        'INPUT_LINES': design.inputLineCount,
        'TRIGGER_LINES': design.triggerLineCount,
        'DEPTH': design.captureDepth,
        'ADDRESS_BITS': design.captureWidth,
    })
    return benchText(design, SHARED_TEMPLATES[SCOPE_BENCH_TEMPLATE], SCOPE_BENCH_NAME, constants, blocks)


def triggerLetters(triggerSet):
    return '"%s"' % ''.join(TRIGGER_LETTERS[triggerSet.textOfLine(line)] for line in range(triggerSet.lineCount))


def sampleLine(hasTrigger, hasWindow):
    parts = ['std_logic_vector(to_unsigned(status.windows mod 16, 4))'] if hasWindow else []
    parts += ['level(is_trigger)'] if hasTrigger else []
    return 'memory(place) := %s;' % ' & '.join(parts + ['data(DATA_DELAY)'])


def scopeBench(scope):
    """The test bench of a scope, an instance of the class Scope."""
    before = 0 if scope.hasWindows else scope.preTriggerSamples
    behind = (scope.windowLength if scope.hasWindows else scope.captureDepth - before) - 1
    return captureBenchText(scope, {
        'SAMPLE_BITS': scope.sampleWidth,
        'DATA_DELAY': scope.dataDelay,
        'WINDOWS': scope.windowCount if scope.hasWindows else 1,
        'SAMPLES_BEFORE': before,
        'SAMPLES_BEHIND': behind,
        'SAMPLES_TO_FILL': before,
        'TRIGGER_VALUES': triggerLetters(scope.triggerSet),
        'FIRST_LEVEL_VALUES': triggerLetters(scope.firstSet if scope.hasTwoLevels else scope.triggerSet),
        'HAS_FIRST_LEVEL': benchLiteral(scope.hasTwoLevels),
    }, {'sample': [sampleLine(scope.triggerBits, scope.windowBits)]})


def startupScopeBench(scope):
    """The test bench of a startup scope, an instance of the class StartupScope."""
    letters = '"%s"' % scope.pattern.strip('"')[::-1]
    return captureBenchText(scope, {
        'SAMPLE_BITS': scope.inputLineCount,
        'DATA_DELAY': 0,
        'WINDOWS': 1,
        'SAMPLES_BEFORE': scope.preTriggerSamples,
        'SAMPLES_BEHIND': scope.captureDepth - 1 - scope.preTriggerSamples,
        'SAMPLES_TO_FILL': 0,
        'TRIGGER_VALUES': letters,
        'FIRST_LEVEL_VALUES': letters,
        'HAS_FIRST_LEVEL': 'false',
    }, dict(STARTUP_BENCH, sample=[sampleLine(False, False)]))
