# Comments at the head of generated texts.


def headerComment(entries, begin='-- ', end=''):
    """Comment lines that show (label, value) pairs between two rules, each line as begin + text + end."""
    width = max(len(label) for label, _ in entries)
    rule = '=' * 70
    lines = [rule] + ['%s  %s' % (label.ljust(width), value) for label, value in entries] + [rule]
    return ''.join(begin + line + end + '\n' for line in lines)


def failureComment(problem):
    """The line that a generator of a single HDL text returns for a problem: a comment that is no design."""
    return '-- Generation failed: %s' % problem


def printableText(text):
    """The text with a "?" for every character that is not printable ASCII, and for every backquote."""
    if isinstance(text, str):
        text = text.decode('utf-8', 'replace')
    return str(''.join(character if ' ' <= character <= '~' and character != '`' else '?' for character in text))
