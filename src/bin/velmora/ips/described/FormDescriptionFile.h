#pragma once

#include <velmora/ips/described/FormDescription.h>
#include <velmora/rules/IPDescription.h>

#include <optional>

namespace Velmora {

/// True when there is a file form.json beside the description file of the IP, whatever it is.
bool hasFormDescription(const IPDescription& ip);

/// The form that an IP describes in the file form.json beside its description file; nothing when there is no such file.
/// Throws Brindle::Critical, with the fields "filename" and "line" where there is one, when it cannot be read or is
/// wrong.
std::optional<FormDescription> readFormDescription(const IPDescription& ip);

} // namespace Velmora
