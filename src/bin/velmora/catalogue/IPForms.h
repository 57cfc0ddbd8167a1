#pragma once

#include <QWidget>

#include <optional>

namespace Velmora {

class GeneratorLeaf;
class IPLeaf;
struct IPDescription;

/// The configuration form of an IP: the widget, and the same object as what it offers.
struct IPForm {
    QWidget* widget;
    GeneratorLeaf* leaf;
};

// Defined above the catalogue, with the forms, so that the catalogue does not depend on them.

/// Makes the form of the IP, a child of its page; nothing for an IP that the program does not know.
std::optional<IPForm> makeForm(IPLeaf& page);

/// The same for another IP, from its own description of the form; nothing when it brings none. Throws
/// Brindle::Critical, mostly with the fields "filename" and "line", when that is wrong.
std::optional<IPForm> makeDescribedForm(IPLeaf& page);

/// True for an IP that the program knows.
bool knowsForm(const IPLeaf& page);

/// True for an IP that brings a description of its form, which is not read.
bool bringsForm(const IPDescription& ip);

/// Throws what `makeDescribedForm` throws.
void requireFormDescription(const IPDescription& ip);

} // namespace Velmora
