#include <Brindle/widgets/CapFrame.h>

#include <QEvent>
#include <QStyle>
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
    child->installEventFilter(this);
}

bool CapFrame::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        setProperty("focused", event->type() == QEvent::FocusIn);
        style()->unpolish(this); // a style sheet looks at properties only when it polishes
        style()->polish(this);
    }
    return QFrame::eventFilter(object, event);
}

} // namespace Brindle
