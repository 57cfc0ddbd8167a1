#pragma once

#include <velmora/signal/DesignWish.h>
#include <velmora/workbench/DesignedList.h>
#include <velmora/workbench/GeneratorRun.h>

#include <QDialog>
#include <QStringList>
#include <QTimer>

#include <vector>

QT_BEGIN_NAMESPACE
class QComboBox;
class QFormLayout;
class QLineEdit;
class QPushButton;
QT_END_NAMESPACE

namespace Velmora {

class MessageLabel;
class PlotView;

/// Asks what a filter should do and has velmora-generate design it, 200 ms after the last change. The wishes that were
/// accepted last are there again the next time.
class DesignDialog : public QDialog {
    Q_OBJECT

public:
    /// What the form takes.
    struct Limits {
        unsigned width = 16; ///< Of a coefficient, in bits.
        int mostTaps = usualMostTaps;
        DesignWish::Parity parity = DesignWish::Parity::Any;
    };

    /// `program` is the path of velmora-generate.
    DesignDialog(const QString& program, const Limits& limits, QWidget* parent);

    /// What the user has accepted.
    const DesignedList& getDesign() const { return _design; }

    void accept() override;

private:
    /// A wish that the user writes down: an option of the command.
    struct Wish {
        QLineEdit* edit;
        const char* option;
        bool isOfSymbols; ///< It belongs to the root raised cosine, and else to all others.
    };

    void addKinds();
    void addWish(const QString& label, const char* option, const QString& initial, const QString& tip,
                 bool isOfSymbols = false);
    void addButtons();
    bool isOfSymbols() const;
    void restoreWishes();
    void showRows();
    void onChanged();
    void ask();
    QStringList getArguments() const;
    QString getText(const char* option) const;
    std::vector<double> getNumbers(const char* option) const;
    std::vector<Band> getWishedBands() const;
    void take(const GeneratorRun::Outcome& outcome);
    void takeDesign(const QByteArray& json);

    const Limits _limits;
    GeneratorRun _run;
    QTimer _pause; // since the last change
    DesignedList _design;
    std::vector<Wish> _wishes;
    QFormLayout* const _rows;
    QComboBox* const _kindCombo;
    QComboBox* const _methodCombo;
    MessageLabel* const _figures;
    PlotView* const _plot;
    QPushButton* _okButton = nullptr;
};

} // namespace Velmora
