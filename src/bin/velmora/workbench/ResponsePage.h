#pragma once

#include <velmora/workbench/ResponsePlot.h>

#include <QWidget>

#include <vector>

QT_BEGIN_NAMESPACE
class QComboBox;
class QDoubleSpinBox;
class QPushButton;
QT_END_NAMESPACE

namespace Velmora {

class CoefficientTools;
class IPLeaf;
class MessageLabel;
class PlotView;

/// The tab that plots what a filter does to a signal.
class ResponsePage : public QWidget {
    Q_OBJECT

public:
    /// The tools are kept, not owned.
    ResponsePage(const IPLeaf& leaf, const CoefficientTools& tools);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void createWidgets();
    QPushButton* createSaveButton(const QString& text, const QString& tip, const char* name,
                                  void (ResponsePage::*onClicked)());
    void onEdited();
    void update();
    /// Empty when there is a response, and then shows it.
    QString showResponse();
    void saveImage();
    void saveNumbers();
    void write(const QString& filename, const QByteArray& content);
    void tell(const QString& text, bool isProblem);

    const CoefficientTools& _tools;
    VelmoraPlotContent _content;
    QComboBox* _viewCombo = nullptr;
    QDoubleSpinBox* _rateSpin = nullptr;
    std::vector<QPushButton*> _saveButtons;
    MessageLabel* _figures = nullptr;
    PlotView* _plot = nullptr;
};

} // namespace Velmora
