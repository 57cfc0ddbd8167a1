# Comments at the head of generated texts.


def headerComment(entries, begin='-- ', end=''):
    """Comment lines that show (label, value) pairs between two rules, each line as begin + text + end."""
    width = max(len(label) for label, _ in entries)
    rule = '=' * 70
    lines = [rule] + ['%s  %s' % (label.ljust(width), value) for label, value in entries] + [rule]
    return ''.join(begin + line + end + '\n' for line in lines)


def failureComment(problem):
    """What a generator of a single HDL text returns for invalid arguments: a comment that is no design."""
    return '-- Generation failed: %s\n' % problem
