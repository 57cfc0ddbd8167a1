# What all generators of a single HDL text have in common.


class Design(object):
    """A design described by the argument dictionary; each IP derives from it and gives the methods that raise here."""

    def problems(self):
        """Sentences that say why the design cannot be generated; none if it can."""
        raise NotImplementedError

    def remarks(self):
        """Sentences on what the designer should know about the design."""
        return []

    def advice(self):
        """Further remarks for a designer who has not generated yet."""
        return []

    def facts(self):
        """(label, value, unit) of what a designer wants to know, the most telling first; the unit may be ''."""
        raise NotImplementedError

    def headerEntries(self):
        """(label, value) pairs of the comment in front."""
        raise NotImplementedError

    def designText(self):
        """The HDL without the header."""
        raise NotImplementedError

    def refusal(self):
        """Comment lines in place of a text that cannot be generated, the reasons being on the console; else ''."""
        problems = self.problems()
        for problem in problems:
            printError(problem)
        return '\n'.join(failureComment(problem) for problem in problems)

    def generate(self):
        """The HDL text; what is wrong or worth knowing goes to the console."""
        refusal = self.refusal()
        if refusal:
            return refusal
        for remark in self.remarks():
            printText(remark)
        # The program ends every line that it writes, the last one included.
        return (headerComment(self.headerEntries()) + '\n' + self.designText()).rstrip('\n')

    def describe(self):
        """The facts, none of a design that cannot be generated; what is worth knowing goes to the console."""
        if self.problems():
            return []
        for remark in self.remarks() + self.advice():
            printText(remark)
        return self.facts()
