#include <Brindle/CapFrame.h>

#include <QVBoxLayout>
#include <QVariant>

namespace Brindle {

namespace {

constexpr int inset = 2; // pixels: the line, and one so that the corners of the child stay inside the round ones

} // namespace

CapFrame::CapFrame(QWidget* child, QWidget* parent) : QFrame(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(inset, inset, inset, inset);
    layout->addWidget(child);
    setProperty("child", QVariant::fromValue(child));
}

} // namespace Brindle
