#include "DialogRobot.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>

#include <chrono>
#include <utility>

namespace {

constexpr std::chrono::milliseconds turn(20);
constexpr int patience = 500; // turns

QString textOf(QWidget* dialog) {
    const auto* messageBox = qobject_cast<QMessageBox*>(dialog);
    return messageBox ? messageBox->text() : dialog->windowTitle();
}

} // namespace

DialogRobot::DialogRobot(QList<Step> steps) : _steps(std::move(steps)) {
    QObject::connect(&_timer, &QTimer::timeout, &_timer, [this] { work(); });
    _timer.start(turn);
}

void DialogRobot::work() {
    QWidget* dialog = QApplication::activeModalWidget();
    if (!dialog || dialog == _busy) // a step that waits for its dialog
        return;
    if (!_steps.isEmpty()) {
        // not from the timer's own slot: a step may open another dialog, and the timer must go on meanwhile
        const auto work = [this, step = _steps.takeFirst(), dialog, earlier = std::exchange(_busy, dialog)] {
            step(dialog);
            _busy = earlier;
        };
        QTimer::singleShot(0, dialog, work);
    } else if (++_idleTurns > patience) {
        QTest::qFail(qPrintable(QStringLiteral("A dialog was left open: ") + textOf(dialog)), __FILE__, __LINE__);
        dialog->close();
    }
}

DialogRobot::Step DialogRobot::enterName(const QString& name) {
    return [name](QWidget* dialog) {
        auto* nameEdit = dialog->findChild<QLineEdit*>("fileNameEdit");
        QApplication::setActiveWindow(dialog);
        QVERIFY2(nameEdit->hasFocus(), "the user wants to type at once");
        nameEdit->selectAll();
        QTest::keyClick(nameEdit, Qt::Key_Delete);
        QTest::keyClicks(nameEdit, name);
        QTest::keyClick(nameEdit, Qt::Key_Return);
    };
}

DialogRobot::Step DialogRobot::press(const QString& buttonText) {
    return [buttonText](QWidget* dialog) {
        for (QAbstractButton* button : dialog->findChildren<QAbstractButton*>()) {
            if (button->text().remove(QLatin1Char('&')) == buttonText) {
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        }
        QTest::qFail("no such button", __FILE__, __LINE__);
    };
}

DialogRobot::Step DialogRobot::cancel() {
    return [](QWidget* dialog) { QTest::keyClick(dialog, Qt::Key_Escape); };
}
