# The templates of the filters, each a working filter of default size.


def filterTemplate(templateName, entityName):
    """The template with its entity, which has the template's own name, called 'entityName'."""
    return renameEntity(TEMPLATES[templateName], templateName[:-len('.vhd')], entityName)


def coefficientElements(values, width, comments):
    """VHDL lines of an aggregate's elements, each with its comment."""
    elements = ['%d => "%s",' % (index, binaryDigits(value, width)) for index, value in enumerate(values)]
    elements[-1] = elements[-1][:-1]
    return withComments(elements, comments)
