#include <velmora/window/SettingsLeaf.h>

#include <velmora/settings/SettingsKeys.h>

#include <Brindle/core/Console.h>
#include <Brindle/widgets/QtLabel.h>
#include <Brindle/widgets/Theme.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSettings>

namespace Velmora {

namespace {

QString storedText(const QString& key, const QString& defaultValue) {
    return QSettings().value(key, defaultValue).toString();
}

/// Stores the value and tells when it takes effect, unless it is what is stored already. Tells when it cannot be
/// stored.
void store(const QString& key, const QString& defaultValue, const QString& value, const std::string& preference) {
    QSettings settings;
    if (value != settings.value(key, defaultValue).toString()) {
        Brindle::console.remark(preference + " setting will take effect on new application launch");
        settings.setValue(key, value);
    }
    settings.sync();
    if (settings.status() == QSettings::AccessError) {
        Brindle::console.error("The preference cannot be kept: " + settings.fileName().toStdString() +
                               " cannot be written.");
    }
}

} // namespace

void SettingsLeaf::createWidgets() {
    auto* grid = new QGridLayout;
    grid->setContentsMargins(0, 0, 0, 0); // in line with the folio's title
    grid->addWidget(getTitleWidget(tr("General")), 0, 0, 1, 5);

    QStringList themes;
    for (const Brindle::Theme& theme : Brindle::Theme::getThemes())
        themes += theme.getName();
    _themeCombo = addPreference(*grid, 1, tr("Theme"), "themeCombo", "theme", themes);
    _themeCombo->setCurrentIndex(Brindle::theme.getCode());
    connect(_themeCombo, SIGNAL(currentIndexChanged(const QString&)), this, SLOT(onThemeChanged(const QString&)));

    _animationsCombo = addPreference(*grid, 2, tr("Use animations when folding/unfolding"), "animationsCombo",
                                     "animations", {tr("Never"), tr("Always")});
    _animationsCombo->setCurrentIndex(
        _animationsCombo->findText(storedText(SettingsKeys::animations, SettingsKeys::defaultAnimations)));
    connect(_animationsCombo, SIGNAL(currentIndexChanged(const QString&)), this,
            SLOT(onAnimationsToggled(const QString&)));

    _sizeCombo = addPreference(*grid, 3, tr("Default size of generation section of the IPs"), "sizeCombo", "size",
                               {tr("50%"), tr("60%"), tr("70%"), tr("80%")});
    _sizeCombo->setCurrentIndex(_sizeCombo->findText(storedText(SettingsKeys::size, SettingsKeys::defaultSize) + "%"));
    connect(_sizeCombo, SIGNAL(currentIndexChanged(const QString&)), this, SLOT(onSizeToggled(const QString&)));

    auto* spacer = new QLabel;
    spacer->setFixedWidth(40);
    grid->addWidget(spacer, 4, 0);

    auto* restoreButton = new QPushButton(tr("Restore defaults"));
    restoreButton->setObjectName(QStringLiteral("RestoreDefaults"));
    connect(restoreButton, &QPushButton::clicked, this, &SettingsLeaf::onRestoreDefaults);
    grid->addWidget(restoreButton, 5, 4);

    grid->setRowStretch(6, 1);
    grid->setColumnStretch(3, 1);
    grid->setColumnMinimumWidth(1, 20);
    setLayout(grid);
}

Quillon::TreeComboBox* SettingsLeaf::addPreference(QGridLayout& grid, int row, const QString& label, const char* name,
                                                   const char* tip, const QStringList& items) {
    auto* combo = new Quillon::TreeComboBox;
    combo->setObjectName(QLatin1String(name));
    combo->setAccessibleName(label);
    combo->setStatusTip(Brindle::theme.getTip(tip));
    combo->setToolTip(combo->statusTip());
    combo->insertItems(0, items);
    auto* title = new QLabel(label);
    title->setBuddy(combo);
    grid.addWidget(title, row, 0);
    grid.addWidget(combo, row, 2);
    return combo;
}

QWidget* SettingsLeaf::getTitleWidget(const QString& title) const {
    auto* widget = new QWidget;
    auto* layout = new QHBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0); // the lines are as long as what stands below them
    layout->addWidget(getRuler(widget), 1);
    layout->addWidget(new QLabel("<b>" + title + "</b>"), 0);
    layout->addWidget(getRuler(widget), 1);
    widget->setContentsMargins(0, 40, 0, 0);
    return widget;
}

QWidget* SettingsLeaf::getRuler(QWidget* parent) const {
    auto* ruler = new QWidget(parent);
    ruler->setFixedHeight(1);
    ruler->setStyleSheet(
        "background-color: " + QString::fromStdString(Brindle::getLabel(Brindle::theme.getColor("border"))) + ";");
    return ruler;
}

void SettingsLeaf::onThemeChanged(const QString& text) {
    store("theme", "light", text.toLower(), "Theme");
}

void SettingsLeaf::onAnimationsToggled(const QString& text) {
    store(SettingsKeys::animations, SettingsKeys::defaultAnimations, text, "Animations");
}

void SettingsLeaf::onSizeToggled(const QString& text) {
    QString percentage = text;
    percentage.chop(1);
    store(SettingsKeys::size, SettingsKeys::defaultSize, percentage, "Size");
}

void SettingsLeaf::onRestoreDefaults() {
    _themeCombo->setCurrentIndex(0);
    _animationsCombo->setCurrentIndex(1);
    _sizeCombo->setCurrentIndex(0);
}

} // namespace Velmora
