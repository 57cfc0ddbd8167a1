# Checks of the names that a designer types and that become identifiers of the generated VHDL.

import re

# VHDL-2008 (IEEE Std 1076-2008, 15.10), PSL words included.
RESERVED_WORDS = frozenset('''
    abs access after alias all and architecture array assert assume assume_guarantee attribute begin block body buffer
    bus case component configuration constant context cover default disconnect downto else elsif end entity exit
    fairness file for force function generate generic group guarded if impure in inertial inout is label library
    linkage literal loop map mod nand new next nor not null of on open or others out package parameter port postponed
    procedure process property protected pure range record register reject release rem report restrict
    restrict_guarantee return rol ror select sequence severity shared signal sla sll sra srl strong subtype then to
    transport type unaffected units until use variable vmode vprop vunit wait when while with xnor xor
    '''.split())

LIBRARY_NAMES = frozenset(['ieee', 'std', 'work'])

# What designs commonly use of what std.standard, ieee.std_logic_1164 and ieee.numeric_std declare.
STANDARD_NAMES = frozenset('''
    bit bit_vector boolean boolean_vector character delay_length error failure false file_open_kind file_open_status fs
    hr integer integer_vector maximum min minimum ms natural note now ns positive ps real real_vector sec
    severity_level string time time_vector to_bstring to_hstring to_ostring to_string true us warning
    falling_edge is_x resolved rising_edge std_logic std_logic_1164 std_logic_vector std_ulogic std_ulogic_vector
    to_01 to_bit to_bitvector to_stdlogicvector to_stdulogic to_stdulogicvector to_ux01 to_x01 to_x01z ux01 ux01z x01
    x01z
    find_leftmost find_rightmost numeric_std resize rotate_left rotate_right shift_left shift_right signed std_match
    to_integer to_signed to_unsigned unresolved_signed unresolved_unsigned unsigned
    '''.split())

# Leaves room for what the generators add to a name, within the 255 bytes of a file name.
LONGEST_IDENTIFIER = 200


def basicIdentifierProblem(label, name):
    """Sentence that says why the content of the form field 'label' is no VHDL basic identifier, or None.

    This alone is the rule for a prefix: what it becomes a part of cannot be a reserved word.
    """
    if not name:
        return '%s is empty: enter a name that begins with a letter.' % label
    if not re.match(r'[A-Za-z0-9_]+\Z', name):
        return '%s holds a character that is not allowed: use only the letters A to Z, digits and underscores.' % label
    if not name[0].isalpha():
        return '%s "%s" does not begin with a letter: put a letter in front.' % (label, name)
    if '__' in name or name.endswith('_'):
        return '%s "%s" has an underscore at its end or two in a row: use single underscores inside.' % (label, name)
    if len(name) > LONGEST_IDENTIFIER:
        return '%s has %d characters: use at most %d.' % (label, len(name), LONGEST_IDENTIFIER)
    return None


def entityNameProblem(label, name, unitNames, usedNames):
    """Sentence that says why the content of the form field 'label' cannot name the entity, or None.

    'unitNames' are the names of all design units made from the name, itself included; 'usedNames' are the
    names, in lower case, that the generated files use for something else.
    """
    problem = basicIdentifierProblem(label, name)
    if problem:
        return problem
    if name.lower() in RESERVED_WORDS:
        return '%s "%s" is a reserved word of VHDL: choose another name.' % (label, name)
    if name.lower() in LIBRARY_NAMES:
        return '%s "%s" is the name of a library: choose another name.' % (label, name)
    for unitName in unitNames:
        if unitName.lower() in STANDARD_NAMES:
            return '%s "%s" is declared by a standard package: choose another name.' % (label, name)
        if unitName.lower() in usedNames:
            return ('%s "%s" cannot be taken, as the generated files use the name "%s" for something else: '
                    'choose another name.' % (label, name, unitName))
    return None


def interfaceIdentifiers(vhdl):
    """Set of the identifiers and reserved words in front of the architecture of a VHDL text, in lower case.

    The names inside an architecture hide those from outside, of which it needs none of a designer's choice.
    """
    code = re.sub(r'--[^\n]*', '', vhdl.split('\narchitecture ')[0])
    code = re.sub(r'[A-Za-z]*"[^"\n]*"|\'[^\n]\'|\d+#\w*#', ' ', code)
    return set(word.lower() for word in re.findall(r'\b[A-Za-z]\w*', code))
