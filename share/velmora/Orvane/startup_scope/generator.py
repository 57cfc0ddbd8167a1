# Generator of the IP "Startup Scope".


class StartupScope(ScopeDesign):
    """Captures once after each reset, around the first match of a pattern."""

    ipName = 'Startup Scope'
    templateName = 'startup_scope.vhd'

    def __init__(self, argDict):
        ScopeDesign.__init__(self, argDict)
        self.sampleWidth = self.inputLineCount
        self.pattern = self.arguments['%%STARTUP_TRIG_VALUE%%']

    def parameterEntries(self):
        return [
            ('Input line count', self.inputLineCount),
            ('Capture depth', self.captureDepth),
            ('Pre-trigger samples', self.preTriggerSamples),
            ('Trigger line count', self.triggerLineCount),
            ('Trigger value', '%s (Trig0 is the rightmost)' % self.pattern),
        ]

    def constants(self):
        return self.captureConstants()

    def ports(self):
        return self.clockAndInputPorts('synchronous, active high; its release starts the capture') + [
            ('busy', 'out', None, 'capture running'),
            ('triggered', 'out', None, 'the trigger came'),
            ('done', 'out', None, 'capture complete, memory readable'),
            ('first_valid', 'out', self.captureWidth, 'number of the first sample that was recorded'),
        ] + self.readPorts('number of a sample', self.sampleWidth)

    def blocks(self):
        return {'trigger value': [
            'constant STARTUP_TRIG_VALUE : std_logic_vector(TRIGGER_LINE_COUNT - 1 downto 0) := %s;' % self.pattern]}


def generate(argDict):
    return StartupScope(argDict).generate()


def describe(argDict):
    return StartupScope(argDict).describe()


def testBench(argDict):
    return startupScopeBench(StartupScope(argDict))
