#pragma once

#include <Quillon/TreeComboBox.h>

#include <QGridLayout>
#include <QStringList>
#include <QWidget>

namespace Velmora {

class Folio;

/// The page of the user's preferences. A change is stored at once and takes effect at the next start.
class SettingsLeaf : public QWidget {
    Q_OBJECT

public:
    explicit SettingsLeaf(Folio* folio);

public Q_SLOTS:
    void onThemeChanged(const QString& text);
    void onAnimationsToggled(const QString& text);
    void onSizeToggled(const QString& text);
    void onRestoreDefaults();

private:
    void createWidgets();
    QWidget* getTitleWidget(const QString& title) const;
    QWidget* getRuler(QWidget* parent) const;
    Quillon::TreeComboBox* addPreference(QGridLayout& grid, int row, const QString& label, const char* name,
                                         const char* tip, const QStringList& items);

    Quillon::TreeComboBox* _themeCombo = nullptr;
    Quillon::TreeComboBox* _animationsCombo = nullptr;
    Quillon::TreeComboBox* _sizeCombo = nullptr;
};

} // namespace Velmora
