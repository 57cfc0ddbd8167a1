# Makes the design and its test bench of the templates. Python 2.7.

import re


def fill(template, argDict):
    """The template with the constants of the form and the name of the entity."""
    text = TEMPLATES[template]
    text = text.replace('PERIOD : positive := 10', 'PERIOD : positive := ' + argDict['%%PERIOD%%'])
    text = text.replace("ACTIVE : std_logic := '1'", 'ACTIVE : std_logic := ' + argDict['%%LEVEL%%'])
    text = re.sub(r'\bticker(?=\b|_tb\b)', argDict['%%ENTITY_NAME%%'], text)
    return text.rstrip('\n')  # the program ends every line that it writes, the last one included


def check(argDict):
    """What is wrong across the fields of the form: messages, each with the keys of the fields at fault."""
    if not re.match(r'[A-Za-z](_?[A-Za-z0-9])*\Z', argDict['%%ENTITY_NAME%%']):
        return [('Entity name should be a VHDL identifier.', ['Entity'])]
    return []


def generate(argDict):
    """The text of the VHDL file."""
    return fill('ticker.vhd', argDict)


def describe(argDict):
    """The facts that the user sees before generating, the most telling first: label, value, unit."""
    period = int(argDict['%%PERIOD%%'])
    return [('Period', period, 'clocks'), ('Counter', (period - 1).bit_length(), 'bits')]


def testBench(argDict):
    """The text of a bench for the file that generate returns."""
    return fill('ticker_tb.vhd', argDict)
