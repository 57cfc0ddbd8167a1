#pragma once

#include <QWidget>

#include <optional>

namespace Velmora {

class GeneratorLeaf;
class IPLeaf;

/// The configuration form of an IP: the widget, and the same object as what it offers.
struct IPForm {
    QWidget* widget;
    GeneratorLeaf* leaf;
};

/// Makes the form of the IP, a child of its page; nothing for an IP that the program does not know. Defined above the
/// catalogue, with the forms, so that the catalogue does not depend on them.
std::optional<IPForm> makeForm(IPLeaf& page);

} // namespace Velmora
