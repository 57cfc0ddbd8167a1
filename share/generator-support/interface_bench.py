# What the test benches of the interface and debug IPs have in common.


def benchText(design, template, defaultName, constants, blocks):
    """The self-checking test bench of a design, or a comment and errors on the console if the design has problems.

    'template' is the bench of an entity with the default name; 'constants' are set in it, 'blocks' replaced, whose names stay.
    """
    refusal = design.refusal()
    if refusal:
        return refusal
    header = headerComment([('Test bench of', design.entityName)] + design.headerEntries())
    text = renameParts(template, {defaultName: design.entityName})
    return (header + '\n' + setConstants(fillBlocks(text, blocks), constants)).rstrip('\n')


def benchLiteral(isTrue):
    return 'true' if isTrue else 'false'
