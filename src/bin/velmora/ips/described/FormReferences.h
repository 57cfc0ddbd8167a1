#pragma once

#include <velmora/ips/described/FormDescription.h>

namespace Velmora {

/// What the rows of a form say of each other: keys and arguments are there once, one row has the key of the entity, and
/// the keys that rows name are those of rows that serve. Throws Brindle::Critical with the field "line" otherwise, and
/// for more rows or tables than a form should have.
void requireReferences(const FormDescription& form);

} // namespace Velmora
