#pragma once

#include <velmora/signal/Scaling.h>
#include <velmora/workbench/DesignedList.h>

#include <QDialog>

#include <optional>
#include <vector>

QT_BEGIN_NAMESPACE
class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
QT_END_NAMESPACE

namespace Velmora {

class MessageLabel;
class PlotView;

/// Asks how the numbers of a file become coefficients of a width, and shows what comes of it.
class ImportDialog : public QDialog {
    Q_OBJECT

public:
    /// There is at least one number. `mostTaps` is what the form takes.
    ImportDialog(const QString& filename, const std::vector<double>& numbers, unsigned width, int mostTaps,
                 QWidget* parent);

    /// What the user has accepted.
    DesignedList getImported() const;

private:
    void addScales();
    void update();
    std::optional<Scaling> getScaling() const;
    void showResult();

    const std::vector<double> _numbers;
    const unsigned _width;
    const int _mostTaps;
    std::optional<ScaledCoefficients> _scaled;
    QComboBox* const _scaleCombo;
    QLineEdit* const _factorEdit;
    MessageLabel* const _figures;
    QPlainTextEdit* const _list;
    PlotView* const _plot;
    QPushButton* _okButton = nullptr;
};

} // namespace Velmora
