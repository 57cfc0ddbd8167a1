#pragma once

#include <QObject>

class ThemeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsThemeByName_data();
    void findsThemeByName();
    void refusesUnknownNames();
    void textIsLegibleOnEveryGround_data();
    void textIsLegibleOnEveryGround();
    void paletteTextIsLegible_data();
    void paletteTextIsLegible();
    void iconsStandOut_data();
    void iconsStandOut();
    void imagesHaveBothDensities_data();
    void imagesHaveBothDensities();
    void styleSheetIsSound_data();
    void styleSheetIsSound();
    void wheelChangesNoInput_data();
    void wheelChangesNoInput();
    void popupShowsSeparatorsAsHairlines();
    void capCarriesItsChild();
};
