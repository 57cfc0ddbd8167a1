#include <Brindle/widgets/WheelGuard.h>

#include <QEvent>
#include <QWidget>

namespace Brindle {

void WheelGuard::guard(QWidget* input) {
    if (!input->findChild<WheelGuard*>(QString(), Qt::FindDirectChildrenOnly))
        input->installEventFilter(new WheelGuard(input));
}

WheelGuard::WheelGuard(QWidget* input) : QObject(input) {
    input->setFocusPolicy(Qt::StrongFocus); // the wheel gives no focus
}

bool WheelGuard::eventFilter(QObject* object, QEvent* event) {
    if (event->type() != QEvent::Wheel)
        return QObject::eventFilter(object, event);
    event->ignore();
    return true;
}

} // namespace Brindle
