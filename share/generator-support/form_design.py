# What the generators of IPs whose forms are described as data have in common.


class FormDesign(Design):
    """A design whose checks name the fields at fault; each IP derives from it and gives 'faults' and what Design asks for."""

    def faults(self):
        """(sentence, [keys of the form]) of all that is wrong with the form."""
        raise NotImplementedError

    def problems(self):
        return [sentence for sentence, _ in self.faults()]
