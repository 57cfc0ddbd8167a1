# The coefficient list of a filter: hexadecimal literals of any length, used in the filter's coefficient width.

import re


class FirCoefficient(object):
    """One element of the list: its text as given and, when that is a literal, its value.

    The digits are taken modulo 2^width and read as two's complement. So a literal with too few digits is extended
    by zeros, one with too many keeps its low bits.
    """

    def __init__(self, text, width):
        self.text = text
        self.isLiteral = re.match(r'[xX]"[0-9A-Fa-f]+"\Z', text) is not None
        if not self.isLiteral:
            return
        digits = text[2:-1]
        self.value = twosComplement(int(digits, 16), width)
        self.isChanged = self.value != twosComplement(int(digits, 16), 4 * len(digits))

    def __str__(self):
        return '%s = %d' % (self.text, self.value)


def twosComplement(pattern, width):
    """The number that the low 'width' bits of a pattern stand for."""
    pattern %= 2 ** width
    return pattern - 2 ** width if pattern >= 2 ** (width - 1) else pattern


def binaryDigits(value, width):
    """The two's complement of a number in 'width' binary digits."""
    return bin(value % 2 ** width)[2:].zfill(width)


def firCoefficients(aggregate, width):
    """The elements of a VHDL aggregate such as (x"02d", x"fe0")."""
    aggregate = aggregate.strip()
    if aggregate.startswith('(') and aggregate.endswith(')'):
        aggregate = aggregate[1:-1].strip()
    if not aggregate:
        return []
    return [FirCoefficient(text.strip(), width) for text in aggregate.split(',')]


def literalProblems(coefficients):
    """One sentence for each element that is no literal, or for the lack of any."""
    if not coefficients:
        return ['Coefficients: no hexadecimal literal found, enter at least one.']
    return ['Coefficients: coefficient %d (%s) is no hexadecimal literal such as x"1f".' % (index, coefficient.text)
            for index, coefficient in enumerate(coefficients) if not coefficient.isLiteral]


def coefficientRemarks(coefficients):
    """One sentence for each literal that does not fit the coefficient width."""
    return ['Coefficients: coefficient %d: %s is used as %d' % (index, coefficient.text, coefficient.value)
            for index, coefficient in enumerate(coefficients) if coefficient.isChanged]


def asymmetryProblem(coefficients):
    """Sentence that names the first two coefficients that break the symmetry, or None."""
    last = len(coefficients) - 1
    for index in range(len(coefficients) // 2):
        if coefficients[index].value != coefficients[last - index].value:
            return ('Coefficients: the list is not symmetric, coefficient %d (%s) and coefficient %d (%s) differ.'
                    % (index, coefficients[index], last - index, coefficients[last - index]))
    return None


def widthOfSum(values, inputWidth):
    """Bits of the smallest two's complement that holds every sum of samples weighted by these coefficients."""
    weight = sum(abs(value) for value in values)
    negativeWeight = sum(-value for value in values if value < 0)
    largestSample = 2 ** (inputWidth - 1) - 1
    highest = weight * largestSample + negativeWeight
    lowest = -weight * largestSample - (weight - negativeWeight)
    return max(highest, -lowest - 1).bit_length() + 1


def ceilingLog2(number):
    """Smallest c with 2^c >= number."""
    return (number - 1).bit_length()
