#pragma once

#include <velmora/rules/Configuration.h>
#include <velmora/rules/IPDescription.h>

#include <algorithm>
#include <ranges>

namespace Velmora {

/// The IP that a configuration is for, as an iterator: the first one with its company, name and uid; when there is
/// none, the first with its company and name, which refuses it for its uid; when there is none either, the end. The
/// projection gives the description of an IP.
template <std::ranges::forward_range IPs, class Projection>
auto findOwner(IPs& ips, const Configuration& configuration, Projection getDescription) {
    const auto isNamesake = [&configuration](const IPDescription& description) {
        return description.company == configuration.getCompany() && description.name == configuration.getName();
    };
    const auto isOwner = [&](const IPDescription& description) {
        return isNamesake(description) && description.uid == configuration.getUID();
    };
    const auto owner = std::ranges::find_if(ips, isOwner, getDescription);
    return owner != std::ranges::end(ips) ? owner : std::ranges::find_if(ips, isNamesake, getDescription);
}

} // namespace Velmora
