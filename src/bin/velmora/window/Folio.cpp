#include <velmora/window/Folio.h>

#include <velmora/window/AboutLeaf.h>
#include <velmora/window/IPsLeaf.h>
#include <velmora/window/SettingsLeaf.h>

#include <Brindle/widgets/Theme.h>
#include <Quillon/Application.h>

#include <QGridLayout>
#include <QKeySequence>
#include <QVBoxLayout>
#include <QVariant>

namespace Velmora {

Folio::Folio(QWidget* parent) : QWidget(parent) {
    auto* buttonColumn = new QWidget(this);
    buttonColumn->setFixedWidth(124);
    auto* columnLayout = new QVBoxLayout;
    columnLayout->setSpacing(12);
    columnLayout->setContentsMargins(0, 0, 12, 0);
    buttonColumn->setLayout(columnLayout);

    _stack = new QStackedWidget(this);
    _titleLabel = new QLabel(this);
    _titleLabel->setObjectName(QStringLiteral("titleLabel"));
    _titleLabel->setIndent(1);
    _titleLabel->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    _buttonGroup.setExclusive(true);

    const auto addButton = [this, columnLayout](const char* name, QToolButton* button) {
        const int id = _stack->count(); // of the page that comes next
        button->setObjectName(QLatin1String(name));
        addShortcut(button, id);
        columnLayout->addWidget(button);
        _buttonGroup.addButton(button, id);
    };
    addButton("IPs", createButton(QStringLiteral("IPs"), "ip", false));
    _ipsLeaf = new IPsLeaf(this);
    _stack->addWidget(_ipsLeaf);
    columnLayout->addStretch(1);
    addButton("About", createButton(tr("About"), "about", true));
    _stack->addWidget(Brindle::theme.getCapWidget(new AboutLeaf(this)));
    addButton("Settings", createButton(tr("Settings"), "settings", true));
    _stack->addWidget(new SettingsLeaf(this));
    connect(&_buttonGroup, SIGNAL(buttonClicked(int)), this, SLOT(setLeaf(int)));
    connect(_stack, &QStackedWidget::currentChanged, this, &Folio::shownIPChanged);
    connect(_ipsLeaf, &IPsLeaf::shownLeafChanged, this, &Folio::shownIPChanged);

    auto* layout = new QGridLayout;
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(1, 1);
    layout->addWidget(buttonColumn, 0, 0, 2, 1);
    layout->addWidget(_titleLabel, 0, 1);
    layout->addWidget(_stack, 1, 1, 1, 3);
    setLayout(layout);
    putButtonsFirst();

    if (QAbstractButton* button = _buttonGroup.button(getAboutLeafIndex()))
        button->click();
}

// They stand here, where the folio is known; the pages know what they need of it alone.
IPsLeaf::IPsLeaf(Folio* folio) : IPsLeaf(folio, folio) {}

AboutLeaf::AboutLeaf(Folio* folio) : AboutLeaf(folio, folio) {}

SettingsLeaf::SettingsLeaf(Folio* folio) : QWidget(folio) {
    createWidgets();
}

/// A shortcut of its own, since the texts of the buttons hold no mnemonics.
void Folio::addShortcut(QToolButton* button, int id) {
    const QKeySequence shortcut(QStringLiteral("Alt+%1").arg(id + 1));
    button->setShortcut(shortcut);
    button->setToolTip(QStringLiteral("%1 (%2)").arg(button->text(), shortcut.toString(QKeySequence::NativeText)));
}

/// Tab goes through the column of buttons before it enters the page.
void Folio::putButtonsFirst() {
    const QList<QAbstractButton*> buttons = _buttonGroup.buttons();
    for (int index = 1; index < buttons.size(); ++index)
        setTabOrder(buttons.at(index - 1), buttons.at(index));
}

QToolButton* Folio::createButton(const QString& text, const std::string& iconName, bool checked) {
    auto* button = new QToolButton;
    button->setText(text);
    button->setFixedWidth(100);
    button->setAutoRaise(true);
    button->setCheckable(true);
    button->setChecked(checked);
    button->setIconSize(QSize(32, 32));
    button->setIcon(Brindle::theme.getIcon(iconName));
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    return button;
}

void Folio::setLeaf(int index) {
    _stack->setCurrentIndex(index);
    if (QAbstractButton* button = _buttonGroup.button(index))
        button->setFocus(); // what had it may be hidden now, and the arrows and Tab are to start from here
}

void Folio::enableLeaf(unsigned long index) {
    if (QAbstractButton* button = findButton(index))
        button->setEnabled(true);
}

void Folio::disableLeaf(unsigned long index) {
    if (QAbstractButton* button = findButton(index))
        button->setEnabled(false);
}

void Folio::raiseLeaf(unsigned long index) {
    if (QAbstractButton* button = findButton(index))
        button->click();
}

QAbstractButton* Folio::findButton(unsigned long index) const {
    return index < static_cast<unsigned long>(_stack->count()) ? _buttonGroup.button(static_cast<int>(index)) : nullptr;
}

int Folio::getCurrentIndex() const {
    return _stack->currentIndex();
}

int Folio::getAboutLeafIndex() const {
    if (Quillon::application->isAboutSuppressed())
        return -1;
    for (int index = 0; index < _stack->count(); ++index) {
        const QWidget* page = _stack->widget(index);
        if (page && dynamic_cast<AboutLeaf*>(page->property("child").value<QWidget*>()))
            return index;
    }
    return -1;
}

IPLeaf* Folio::getShownIP() const {
    return _stack->currentWidget() == _ipsLeaf ? _ipsLeaf->getShownLeaf() : nullptr;
}

void Folio::showIP(IPLeaf* leaf) {
    _ipsLeaf->showLeaf(leaf); // before, or the page that was shown last would be made for nothing
    raiseLeaf(static_cast<unsigned long>(_stack->indexOf(_ipsLeaf)));
}

void Folio::save(QSettings& settings) const {
    _ipsLeaf->save(settings);
}

void Folio::setTitle(const QString& title) {
    _titleLabel->setText(QStringLiteral("<b>") + title + QStringLiteral("</b>"));
}

} // namespace Velmora
