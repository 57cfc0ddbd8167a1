#pragma once

#include <QLineEdit>

QT_BEGIN_NAMESPACE
class QWebView;
QT_END_NAMESPACE

namespace Velmora {

/// A line in the upper right corner of a web page in which the user types what to find: Enter goes to the next place,
/// with Shift to the last one, Escape back to the page.
class FindBar : public QLineEdit {
    Q_OBJECT

public:
    /// The bar is hidden until it is opened.
    explicit FindBar(QWebView* view);

    void open();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    /// Follows the size of the view.
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void find(bool isBackward = false);
    void place();

    QWebView* const _view;
};

} // namespace Velmora
