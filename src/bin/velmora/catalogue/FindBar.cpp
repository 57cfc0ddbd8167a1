#include <velmora/catalogue/FindBar.h>

#include <Brindle/widgets/Theme.h>

#include <QKeyEvent>

#include <algorithm>
#include <utility>

namespace Velmora {

namespace {

constexpr int barWidth = 240; // pixels
constexpr int margin = 16;    // pixels, beside the scroll bar

} // namespace

FindBar::FindBar(QWidget* view, Finder finder) : QLineEdit(view), _view(view), _finder(std::move(finder)) {
    setObjectName(QStringLiteral("findBar"));
    setPlaceholderText(tr("Find in page"));
    setAccessibleName(placeholderText());
    connect(this, &QLineEdit::textChanged, this, [this] { find(); });
    view->installEventFilter(this);
    hide();
}

void FindBar::open() {
    place();
    show();
    setFocus();
    selectAll();
}

void FindBar::find(bool isBackward) {
    const bool isFound = text().isEmpty() || _finder(text(), isBackward);
    QPalette colors;
    if (!isFound)
        colors.setColor(QPalette::Text, Brindle::theme.getColor("error"));
    setPalette(colors);
}

void FindBar::place() {
    resize(std::min(barWidth, _view->width() - 2 * margin), sizeHint().height());
    move(_view->width() - width() - margin, margin / 2);
}

void FindBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        find(event->modifiers().testFlag(Qt::ShiftModifier));
    } else if (event->key() == Qt::Key_Escape) {
        hide();
        _view->setFocus();
    } else {
        QLineEdit::keyPressEvent(event);
    }
}

bool FindBar::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::Resize)
        place();
    return QLineEdit::eventFilter(object, event);
}

} // namespace Velmora
