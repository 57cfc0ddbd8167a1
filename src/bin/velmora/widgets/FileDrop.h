#pragma once

#include <QObject>
#include <QStringList>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace Velmora {

/// Takes the files that the user drops on a window, on whatever place in it. Fields would enter the path as a text and
/// a web page go there otherwise; what is dragged without a file still belongs to them, and a file to a `FileTarget`.
class FileDrop : public QObject {
    Q_OBJECT

public:
    /// The window must have been shown. It owns the object.
    explicit FileDrop(QWidget* window);

Q_SIGNALS:
    /// The paths of at least one file.
    void dropped(const QStringList& filenames);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* const _window;
};

} // namespace Velmora
