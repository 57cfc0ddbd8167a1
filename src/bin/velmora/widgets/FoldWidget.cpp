#include <velmora/widgets/FoldWidget.h>

#include <velmora/settings/SettingsKeys.h>

#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QSettings>

namespace Velmora {

namespace {

constexpr int animationTime = 200; // ms

/// At once, and from the inside out, since each layout asks the next one for room.
void layOutAround(QWidget* widget) {
    for (QWidget* ancestor = widget; ancestor; ancestor = ancestor->parentWidget())
        QCoreApplication::sendPostedEvents(ancestor, QEvent::LayoutRequest);
}

} // namespace

FoldWidget::FoldWidget(const QString& title, QWidget* parent) : QWidget(parent), _contentLayout(new QGridLayout) {
    _contentLayout->setContentsMargins(0, 8, 0, 8); // the columns are in line with those around the section
    auto* layout = new QGridLayout;
    layout->setContentsMargins(0, 0, 0, 0);

    _toggle = new QToolButton(this);
    _toggle->setText(QString(title).replace('&', QLatin1String("&&")));
    _toggle->setStyleSheet(QStringLiteral("QToolButton { border: none; } QToolButton::checked { color: inherit; }"));
    _toggle->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    _toggle->setArrowType(Qt::RightArrow);
    _toggle->setCheckable(true);
    _toggle->setChecked(false);
    layout->addWidget(_toggle, 0, 0);
    auto* rule = new QLabel(QStringLiteral("<hr />"), this);
    rule->installEventFilter(this);
    layout->addWidget(rule, 0, 1);

    _body = new QWidget(this);
    _body->setMaximumHeight(0);
    _body->setMinimumHeight(0);
    _body->hide(); // or Tab would go through fields that cannot be seen
    _animation.setTargetObject(_body);
    _animation.setPropertyName("maximumHeight");
    layout->addWidget(_body, 1, 0, 1, -1);

    connect(_toggle, &QToolButton::clicked, this, &FoldWidget::onTogglePressed);
    connect(&_animation, &QPropertyAnimation::finished, this, [this] {
        _body->setVisible(_toggle->isChecked());
        if (!_toggle->isChecked())
            return;
        layOutAround(this);
        Q_EMIT opened();
    });
    setLayout(layout);
}

FoldWidget::~FoldWidget() {
    if (!_contentLayout->parent())
        delete _contentLayout; // never finalized
}

void FoldWidget::addWidget(QWidget* widget, int row, int column, Qt::Alignment alignment) {
    _contentLayout->addWidget(widget, row, column, alignment);
}

void FoldWidget::addWidget(QWidget* widget, int row, int column, int rowSpan, int columnSpan, Qt::Alignment alignment) {
    _contentLayout->addWidget(widget, row, column, rowSpan, columnSpan, alignment);
}

void FoldWidget::setColumnStretch(int column, int stretch) {
    _contentLayout->setColumnStretch(column, stretch);
}

void FoldWidget::setColumnMinimumWidth(int column, int width) {
    _contentLayout->setColumnMinimumWidth(column, width);
}

void FoldWidget::finalize() {
    _body->setLayout(_contentLayout);
    const QString animations = QSettings().value(SettingsKeys::animations, SettingsKeys::defaultAnimations).toString();
    _animation.setDuration(animations == QLatin1String("Never") ? 0 : animationTime);
    _animation.setStartValue(0);
    measure();
}

void FoldWidget::open() {
    if (!_toggle->isChecked())
        _toggle->click();
}

void FoldWidget::measure() {
    for (QWidget* field : _body->findChildren<QWidget*>())
        field->ensurePolished(); // fields have the style's height only then
    _animation.setEndValue(_contentLayout->sizeHint().height());
    _isMeasured = true;
}

void FoldWidget::changeEvent(QEvent* event) {
    if (event->type() == QEvent::StyleChange)
        _isMeasured = false; // and anew at the next opening, when the fields have got the style as well
    QWidget::changeEvent(event);
}

bool FoldWidget::eventFilter(QObject* object, QEvent* event) {
    if (event->type() != QEvent::MouseButtonPress)
        return QWidget::eventFilter(object, event);
    _toggle->click();
    return true;
}

void FoldWidget::onTogglePressed(bool checked) {
    if (checked) {
        if (!_isMeasured && _body->layout())
            measure();
        _body->show();
    }
    _toggle->setArrowType(checked ? Qt::DownArrow : Qt::RightArrow);
    _animation.setDirection(checked ? QAbstractAnimation::Forward : QAbstractAnimation::Backward);
    _animation.start(QAbstractAnimation::KeepWhenStopped);
}

} // namespace Velmora
