# Generator of the IP "Scope".

import re


class LineTrigger(object):
    """What a trigger line has to show: its text in the form and the VHDL expression, %d being the line's number."""

    def __init__(self, text, expression):
        self.text = text
        self.expression = expression


LOW = LineTrigger('0', 'not trig_now(%d)')
HIGH = LineTrigger('1', 'trig_now(%d)')
RISING = LineTrigger('Rising edge', '(trig_now(%d) and not trig_before(%d))')
FALLING = LineTrigger('Falling edge', '(not trig_now(%d) and trig_before(%d))')
BOTH = LineTrigger('Both edges', '(trig_now(%d) xor trig_before(%d))')

# What the codes of a trigger set mean, by the trigger mode. A line with any other code is ignored.
CODES = {
    'basic': {'00': LOW, '01': HIGH},
    'basic_and_edges': {'000': LOW, '001': HIGH, '110': RISING, '100': FALLING, '111': BOTH},
}


class TriggerSet(object):
    """One code for each trigger line, read from association text such as 0 => "01", others => "11".

    'label' is the column of the form that the set comes from.
    """

    def __init__(self, label, text, mode, lineCount):
        self.label = label
        self.lineCount = lineCount
        self.problem = None
        self.codes = {}
        self.readCodes(text.strip())
        default = self.codes.get('others')
        self.triggers = [CODES[mode].get(self.codes.get(line, default)) for line in range(lineCount)]

    def readCodes(self, text):
        """Fills 'codes', from the line's number or 'others' to the code, or sets 'problem'."""
        if text.startswith('(') and text.endswith(')'):
            text = text[1:-1].strip()
        for element in text.split(',') if text else []:
            match = re.match(r'\s*(\d+|others)\s*=>\s*"([^"]*)"\s*\Z', element, re.IGNORECASE)
            if match is None:
                self.problem = ('%s: %s is not of the form 0 => "01", set every line anew.'
                                % (self.label, element.strip()))
                return
            line = match.group(1).lower()
            self.addCode(line if line == 'others' else int(line), match.group(2))

    def addCode(self, line, code):
        if line != 'others' and line >= self.lineCount:
            self.problem = ('%s: there is a value for line %d, but Trigger line count is %d: raise the count.'
                            % (self.label, line, self.lineCount))
        elif line in self.codes:
            self.problem = '%s: there are two values for line %s, give one.' % (self.label, line)
        self.codes[line] = code

    def usesEdges(self):
        return any(trigger in (RISING, FALLING, BOTH) for trigger in self.triggers)

    def usesLines(self):
        return any(self.triggers)

    def textOfLine(self, line):
        return self.triggers[line].text if self.triggers[line] else 'Ignore'

    def conditionLines(self, target):
        """VHDL lines that assign the condition, which is the AND over all lines, to the signal 'target'."""
        used = [line for line, trigger in enumerate(self.triggers) if trigger]
        if not used:
            return ["%s <= '1'; -- all lines are ignored" % target]
        terms = [self.triggers[line].expression.replace('%d', str(line)) for line in used]
        terms = [term + ' and' for term in terms[:-1]] + [terms[-1] + ';']
        comments = ['Trig%d: %s' % (line, self.textOfLine(line)) for line in used]
        lines = withComments(terms, comments)
        return [target + ' <= ' + lines[0]] if len(lines) == 1 else [target + ' <='] + indented(lines)


class Scope(ScopeDesign):
    """Records around a trigger condition, once in a ring or several windows one after the other."""

    ipName = 'Scope'
    templateName = 'scope.vhd'

    def __init__(self, argDict):
        ScopeDesign.__init__(self, argDict)
        self.wantedPreTriggerSamples = self.preTriggerSamples
        self.preTriggerSamples = min(self.wantedPreTriggerSamples, self.captureDepth - 1)
        self.windowLength = self.number('WINDOW_CAPTURE_LENGTH')
        self.windowCount = self.captureDepth // self.windowLength
        self.dataDelay = self.number('USER_DATA_DELAY')
        self.triggerBits = self.number('STORE_TRIGGER')
        self.windowBits = self.number('STORE_WINDOW')
        self.sampleWidth = self.inputLineCount + self.triggerBits + self.windowBits
        self.triggerMode = self.arguments['%%TRIGGER_MODE%%'].strip('"')
        self.captureMode = self.arguments['%%CAPTURE_MODE%%'].strip('"')
        self.hasWindows = self.captureMode == 'multiple_windows'
        self.hasTwoLevels = self.arguments['%%MULTIPLE_TRIGGER_LEVEL%%'].lower() == 'true'
        self.triggerSet = self.setInUse('Trigger value', 'BASIC_TRIGGER_VALUES', 'EDGE_TRIGGER_VALUES')
        self.firstSet = None
        if self.hasTwoLevels:
            self.firstSet = self.setInUse(
                'First level trigger value', 'ADVANCED_TRIGGER_VALUES', 'ADVANCED_EDGE_TRIGGER_VALUES')

    def setInUse(self, label, basicKey, edgeKey):
        key = basicKey if self.triggerMode == 'basic' else edgeKey
        return TriggerSet(label, self.arguments['%%' + key + '%%'], self.triggerMode, self.triggerLineCount)

    def setsInUse(self):
        return [self.triggerSet] + ([self.firstSet] if self.hasTwoLevels else [])

    def problems(self):
        return ScopeDesign.problems(self) + [each.problem for each in self.setsInUse() if each.problem]

    def remarks(self):
        if self.hasWindows or self.preTriggerSamples == self.wantedPreTriggerSamples:
            return []
        return ['Pre-trigger samples: %d taken in place of %d, as the %d samples of the memory include the trigger.'
                % (self.preTriggerSamples, self.wantedPreTriggerSamples, self.captureDepth)]

    def parameterEntries(self):
        return [
            ('Input line count', self.inputLineCount),
            ('Capture depth', self.captureDepth),
        ] + self.captureEntries() + [
            ('User data delay', self.dataDelay),
            ('Store trigger pulse', enableText(self.triggerBits)),
            ('Store window number', enableText(self.windowBits)),
            ('Trigger line count', self.triggerLineCount),
            ('Trigger mode', 'Basic' if self.triggerMode == 'basic' else 'Basic & Edges'),
            ('Multiple level trigger', enableText(self.hasTwoLevels)),
        ] + [('Trig%d' % line, self.lineText(line)) for line in range(self.triggerLineCount)]

    def captureEntries(self):
        if not self.hasWindows:
            return [('Capture mode', 'Pre-trigger'), ('Pre-trigger samples', self.preTriggerSamples)]
        return [
            ('Capture mode', 'Multiple windows'),
            ('Window capture length', '%d, %d windows' % (self.windowLength, self.windowCount)),
        ]

    def lineText(self, line):
        text = self.triggerSet.textOfLine(line)
        if self.hasTwoLevels:
            text += ', first level: ' + self.firstSet.textOfLine(line)
        return text

    def constants(self):
        return self.captureConstants() + [
            ('WINDOW_CAPTURE_LENGTH', 'integer', self.windowLength, 'samples of a window'),
            ('WINDOW_COUNT', 'integer', self.windowCount, 'windows that fit into the memory'),
            ('USER_DATA_DELAY', 'integer', self.dataDelay, 'clocks by which data_in is delayed'),
            ('STORE_TRIGGER', 'integer', self.triggerBits, 'bits of the trigger pulse in a sample'),
            ('STORE_WINDOW', 'integer', self.windowBits, 'bits of the window number in a sample'),
            ('SAMPLE_WIDTH', 'integer', self.sampleWidth, 'bits of a sample'),
            ('MULTIPLE_TRIGGER_LEVEL', 'boolean', str(self.hasTwoLevels).lower(), 'a first level precedes the trigger'),
            ('TRIGGER_MODE', 'string', '"%s"' % self.triggerMode, 'what the conditions can hold'),
            ('CAPTURE_MODE', 'string', '"%s"' % self.captureMode, 'what a trigger captures'),
        ]

    def ports(self):
        return self.clockAndInputPorts('synchronous, active high') + [
            ('arm', 'in', None, 'starts a capture unless busy'),
            ('force_trigger', 'in', None, 'stands for a trigger, whatever trig_in is'),
            ('busy', 'out', None, 'capture running'),
            ('triggered', 'out', None, 'a trigger came since arm'),
            ('done', 'out', None, 'capture complete, memory readable'),
            ('window_count', 'out', self.captureWidth, 'windows completed since arm'),
        ] + self.readPorts('number of a sample, 0 is the oldest', self.sampleWidth)

    def blocks(self):
        blocks = {
            'line signals': self.lineSignalLines(),
            'line registers': self.lineRegisterLines(),
            'trigger condition': self.triggerSet.conditionLines('trigger_condition'),
            'sample': [self.sampleLine()],
        }
        if self.hasTwoLevels:
            blocks['first level condition'] = self.firstSet.conditionLines('first_condition')
        else:
            blocks.update(SINGLE_LEVEL)
        if self.hasWindows:
            blocks.update(WINDOW_CAPTURE)
        return blocks

    def lineSignalLines(self):
        return ['signal %s : std_logic_vector(TRIGGER_LINE_COUNT - 1 downto 0);' % name
                for name, _ in self.lineRegisters()]

    def lineRegisterLines(self):
        return ['%s <= %s;' % register for register in self.lineRegisters()]

    def lineRegisters(self):
        """(name, source) of the registers that the conditions need; the names have the same width."""
        registers = [('trig_now   ', 'trig_in'), ('trig_before', 'trig_now')]
        if any(triggerSet.usesEdges() for triggerSet in self.setsInUse()):
            return registers
        return registers[:1] if any(triggerSet.usesLines() for triggerSet in self.setsInUse()) else []

    def sampleLine(self):
        parts = ['data_pipe(LAST_STAGE)']
        if self.triggerBits:
            parts.insert(0, 'accepted')
        if self.windowBits:
            parts.insert(0, 'std_logic_vector(to_unsigned(window mod 16, STORE_WINDOW))')
        return 'write_data   <= %s;' % ' & '.join(parts)


# The template's blocks for a trigger of one level.
SINGLE_LEVEL = {
    'first level signals': [],
    'first level condition': [],
    'first level state': [],
    'first level': [],
    'trigger': ['trigger  <= forced or trigger_condition;'],
}

# The template's blocks for several windows; the blocks in the template are for one capture in a ring.
WINDOW_CAPTURE = {
    'window size': [
        'constant TRIGGER_POSITION : integer := 0;',
        'constant LAST_POSITION    : integer := WINDOW_CAPTURE_LENGTH - 1;',
        'constant LAST_WINDOW      : integer := work.scope_pkg.WINDOW_COUNT - 1; -- the port hides the constant',
    ],
    'storing': [
        '-- A window begins with the sample of its trigger and follows the one before it in the memory.',
        'storing <= live(1) and (trigger or not waiting);',
    ],
    'read index': ['read_index <= place(number);'],
}


def enableText(isEnabled):
    return 'Enable' if isEnabled else 'Disable'


def generate(argDict):
    return Scope(argDict).generate()


def describe(argDict):
    return Scope(argDict).describe()


def testBench(argDict):
    return scopeBench(Scope(argDict))
