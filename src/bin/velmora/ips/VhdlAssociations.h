#pragma once

#include <QStringList>

#include <string>

namespace Velmora {

/// The elements of a VHDL array aggregate that gives each index its string literal: `0 => "03P", 1 => "03N"`. Empty for
/// no text. The texts stand between their quotes as they are.
std::string getAssociations(const QStringList& texts);

} // namespace Velmora
