#pragma once

#include <QList>
#include <QTimer>

#include <functional>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

/// Works modal dialogs while the test waits for them: each step gets the dialog that is open when its turn comes. A
/// dialog that is still open a while after the last step is closed, and fails the test.
class DialogRobot {
public:
    using Step = std::function<void(QWidget*)>;

    explicit DialogRobot(QList<Step> steps);

    /// True when every step had its dialog.
    bool isDone() const { return _steps.isEmpty(); }

    /// Steps: types over the name field of a file dialog and confirms; presses a message box's button by its text, or
    /// Escape.
    static Step enterName(const QString& name);
    static Step press(const QString& buttonText);
    static Step cancel();

private:
    void work();

    QList<Step> _steps;
    QWidget* _busy = nullptr; ///< The dialog in which a step is at work.
    QTimer _timer;
    int _idleTurns = 0;
};
