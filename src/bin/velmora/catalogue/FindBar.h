#pragma once

#include <QLineEdit>

#include <functional>

namespace Velmora {

/// A line in the upper right corner of a page in which the user types what to find: Enter goes to the next place,
/// with Shift to the last one, Escape back to the page.
class FindBar : public QLineEdit {
    Q_OBJECT

public:
    /// Goes to the next place of the text, or to the last one, round the end; false when there is none.
    using Finder = std::function<bool(const QString& text, bool isBackward)>;

    /// The bar is hidden until it is opened.
    FindBar(QWidget* view, Finder finder);

    void open();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    /// Follows the size of the view.
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void find(bool isBackward = false);
    void place();

    QWidget* const _view;
    const Finder _finder;
};

} // namespace Velmora
