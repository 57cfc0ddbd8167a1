#!/usr/bin/env python3
"""Converts a capture of a scope or a startup scope into a VCD file for a wave viewer.

scope2vcd.py CAPTURE OUT.vcd [--period-ns K] [--names FILE]

The capture is a text: header lines, then one line of 0 and 1 for each sample, the highest bit first and the oldest
sample first. Runs under Python 2.7 and Python 3.
"""

from __future__ import print_function, unicode_literals

import argparse
import io
import re
import sys

FIRST_LINE = '# velmora-scope 1'
PRE_TRIGGER = 'pre_trigger_enable'
WINDOWS = 'multiple_windows'

# Patterns of the header's values by keyword.
HEADER = {
    'entity': r'\S+',
    'inputs': r'[1-9]\d*',
    'trigger': r'[01]',
    'window': r'[04]',
    'mode': PRE_TRIGGER + '|' + WINDOWS,
    'position': r'\d+',
    'length': r'[1-9]\d*',
    'first': r'\d+',
    'samples': r'[1-9]\d*',
}
NEEDED = ['entity', 'inputs', 'trigger', 'window', 'mode', 'samples']


class CaptureError(Exception):
    """A capture that is not of the expected form; the text says what and where."""


class Capture(object):
    """A capture as read: what its header tells, and its rows."""

    def __init__(self, text):
        lines = text.split('\n')
        if lines[-1] == '':
            lines.pop()
        if not lines or lines[0].rstrip() != FIRST_LINE:
            raise CaptureError('line 1: expected "%s"' % FIRST_LINE)
        headerLength = self.readHeader(lines)
        self.checkKeywords()
        self.entity = self.header['entity']
        self.inputCount = self.number('inputs')
        self.hasTrigger = self.number('trigger') == 1
        self.windowBits = self.number('window')
        self.hasWindows = self.header['mode'] == WINDOWS
        self.rowCount = self.number('samples')
        self.first = self.number('first')
        self.checkNumbers()
        self.rows = lines[headerLength:]
        self.checkRows(headerLength)

    def readHeader(self, lines):
        """Number of lines of the header, whose last line is that of the keyword 'samples'."""
        self.header = {}
        for place, line in enumerate(lines[1:], 2):
            words = line.split(None, 1)
            keyword, value = (words + ['', ''])[:2]
            if keyword not in HEADER:
                raise CaptureError('line %d: unknown header line "%s"' % (place, excerpt(line)))
            if keyword in self.header:
                raise CaptureError('line %d: second line "%s"' % (place, keyword))
            if not re.match('(?:%s)$' % HEADER[keyword], value.rstrip()):
                raise CaptureError('line %d: wrong value "%s" of "%s"' % (place, excerpt(value), keyword))
            self.header[keyword] = value.rstrip()
            if keyword == 'samples':
                return place
        raise CaptureError('the header line "samples" is missing')

    def checkKeywords(self):
        hasWindows = self.header.get('mode') == WINDOWS
        unfit = ['position', 'first'] if hasWindows else ['length']
        for keyword in NEEDED + ['length' if hasWindows else 'position']:
            if keyword not in self.header:
                raise CaptureError('the header line "%s" is missing' % keyword)
        for keyword in unfit:
            if keyword in self.header:
                raise CaptureError('the header line "%s" does not belong to mode %s' % (keyword, self.header['mode']))

    def number(self, keyword):
        return int(self.header.get(keyword, '0'))

    def checkNumbers(self):
        if self.hasWindows and self.rowCount % self.number('length'):
            raise CaptureError('%d samples are no whole number of windows' % self.rowCount)
        if max(self.number('position'), self.first) >= self.rowCount:
            raise CaptureError('"position" and "first" must be less than "samples"')

    def checkRows(self, headerLength):
        if len(self.rows) != self.rowCount:
            raise CaptureError('%d samples are announced, but there are %d' % (self.rowCount, len(self.rows)))
        width = self.inputCount + (1 if self.hasTrigger else 0) + self.windowBits
        for index, row in enumerate(self.rows):
            if len(row) != width:
                raise CaptureError('line %d: %d characters, expected %d' % (headerLength + index + 1, len(row), width))
            if index >= self.first and row.strip('01'):
                raise CaptureError('line %d: only 0 and 1 are allowed' % (headerLength + index + 1))

    def blocks(self):
        """(number of the first sample, number of the sample behind the last) of each stretch without a gap."""
        if not self.hasWindows:
            return [(self.first, self.rowCount)]
        length = self.number('length')
        return [(begin, begin + length) for begin in range(0, self.rowCount, length)]

    def triggerPosition(self):
        """Place of the trigger's sample in a stretch that has no sample missing."""
        return 0 if self.hasWindows else self.number('position')


class VcdWriter(object):
    """Writes time stamps and value changes of the variables of a capture."""

    def __init__(self, output, capture, names, period):
        self.output = output
        self.capture = capture
        self.names = names
        self.period = period
        self.values = []  # as last written
        variableCount = len(names) + 1 + (1 if capture.windowBits else 0)
        self.codes = [identifierCode(number) for number in range(variableCount)]

    def write(self):
        self.writeDefinitions()
        tick = 0
        for begin, end in self.capture.blocks():
            # A window follows the one before it after a gap of one period; the samples in front of 'first' keep theirs.
            tick += begin if not self.capture.hasWindows else 0
            for number in range(begin, end):
                self.writeValues(tick, self.sampleValues(number, begin))
                tick += 1
            if self.capture.hasWindows:
                self.writeValues(tick, ['x'] * len(self.codes))
                tick += 1
        if not self.capture.hasWindows:
            self.output.write('#%d\n' % (tick * self.period))

    def writeDefinitions(self):
        widths = [1] * (len(self.names) + 1) + [self.capture.windowBits]
        lines = ['$timescale 1 ns $end', '$scope module %s $end' % self.capture.entity]
        for width, code, name in zip(widths, self.codes, self.names + ['trigger', 'window']):
            lines.append('$var wire %d %s %s $end' % (width, code, name))
        lines += ['$upscope $end', '$enddefinitions $end']
        self.output.write('\n'.join(lines) + '\n')

    def sampleValues(self, number, begin):
        """Values of all variables at a sample, in the order of their codes."""
        row = self.capture.rows[number]
        values = list(reversed(row[-self.capture.inputCount:]))
        if self.capture.hasTrigger:
            values.append(row[self.capture.windowBits])
        else:
            offset = number - begin if self.capture.hasWindows else number
            values.append('1' if offset == self.capture.triggerPosition() else '0')
        if self.capture.windowBits:
            values.append(row[:self.capture.windowBits])
        return values

    def writeValues(self, tick, values):
        if values == self.values:
            return
        changes = ['#%d\n' % (tick * self.period)]
        for number, value in enumerate(values):
            if not self.values or value != self.values[number]:
                isVector = number > len(self.names)
                changes.append(('b%s %s\n' if isVector else '%s%s\n') % (value, self.codes[number]))
        self.output.write(''.join(changes))
        self.values = values


def identifierCode(number):
    """Short code of a variable, made of the printable ASCII characters."""
    code = chr(33 + number % 94)
    return code if number < 94 else identifierCode(number // 94 - 1) + code


def excerpt(text):
    """The begin of a text, fit for a message of one line."""
    return re.sub(r'[^ -~]', '?', text[:60])


def readText(path, encoding):
    """The text of a file, with line feeds as line ends."""
    with io.open(path, encoding=encoding) as source:
        return source.read()


def lineNames(path, count):
    """Names of the input lines: line i of the file names input i, an empty one leaves it its own name."""
    given = readText(path, 'utf-8-sig').split('\n') if path else []
    names = [re.sub(r'\s', '_', name.strip()) for name in given[:count]]
    names += [''] * (count - len(names))
    return [name or 'in%d' % number for number, name in enumerate(names)]


def periodInNanoseconds(text):
    if not re.match(r'[1-9][0-9]*$', text):
        raise argparse.ArgumentTypeError('"%s" is no whole number of nanoseconds' % text)
    return int(text)


def main():
    parser = argparse.ArgumentParser(description='Converts a capture into a VCD file for a wave viewer.')
    parser.add_argument('capture', metavar='CAPTURE', help='capture text')
    parser.add_argument('output', metavar='OUT.vcd', help='file to write')
    parser.add_argument('--period-ns', metavar='K', type=periodInNanoseconds, default=10,
                        help='sampling period in nanoseconds (default 10)')
    parser.add_argument('--names', metavar='FILE', help='names of the input lines, one a line')
    options = parser.parse_args()
    try:
        capture = Capture(readText(options.capture, 'latin-1'))
        names = lineNames(options.names, capture.inputCount)
        with io.open(options.output, 'w', encoding='utf-8', newline='\n') as output:
            VcdWriter(output, capture, names, options.period_ns).write()
    except CaptureError as error:
        print('scope2vcd: malformed capture: %s' % error, file=sys.stderr)
        return 1
    except EnvironmentError as error:
        print('scope2vcd: %s' % error, file=sys.stderr)
        return 1
    except UnicodeError:
        print('scope2vcd: the names are no UTF-8 text', file=sys.stderr)
        return 1
    return 0


if __name__ == '__main__':
    sys.exit(main())
