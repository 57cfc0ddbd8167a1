#pragma once

#include <QObject>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace Brindle {

/// Keeps the wheel from changing an input, even one that has the focus, since whoever scrolls a form does not see what
/// the pointer passes over: the event goes on to the scroll area around the input.
class WheelGuard : public QObject {
    Q_OBJECT

public:
    /// Guards the input, once however often it is asked for. The guard is owned by the input.
    static void guard(QWidget* input);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    explicit WheelGuard(QWidget* input);
};

} // namespace Brindle
