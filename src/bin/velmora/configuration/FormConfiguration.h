#pragma once

#include <velmora/rules/Configuration.h>

namespace Velmora {

class Form;

/// Adds what the form holds: the items of combo boxes by their texts, coefficients separated by ", ", and of every
/// table the cells of the visible rows that can be filled in.
void addFormValues(Configuration& configuration, const Form& form);

/// Gives the form the values, and rows beyond those of a table their initial texts. Throws Brindle::Critical with the
/// fields "filename" and "line", and changes nothing, when the configuration lacks a key of the form or a visible row,
/// has a key or a row too many, or a value that the form cannot hold.
void setFormValues(Form& form, const Configuration& configuration);

} // namespace Velmora
