#pragma once

#include <velmora/workbench/Preview.h>

#include <QWidget>

QT_BEGIN_NAMESPACE
class QComboBox;
class QHBoxLayout;
class QPushButton;
QT_END_NAMESPACE

namespace Velmora {

class HdlView;
class IPLeaf;
class MessageLabel;
class PreviewFeed;
class PreviewSheet;

/// The tab that shows what the form would give: the symbol of the entity, facts, remarks and the HDL.
class PreviewPage : public QWidget {
    Q_OBJECT

public:
    /// The feed writes the test bench; both are kept, not owned.
    PreviewPage(IPLeaf& leaf, PreviewFeed& feed);

    /// What is shown from now on, as soon as the page is visible.
    void setPreview(const Preview& preview);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void createWidgets();
    QPushButton* addButton(const QString& text, const char* name, void (PreviewPage::*onClicked)());
    void showPreview();
    void showFile();
    void copyInstantiation();
    void copyHdl();
    void saveBench();
    void tell(const QString& text, bool isProblem = false);
    const Preview::File* getShownFile() const;

    PreviewFeed& _feed;
    IPLeaf& _leaf;
    Preview _preview;
    bool _isOutdated = true; // what is shown
    PreviewSheet* _sheet = nullptr;
    QHBoxLayout* _bar = nullptr;
    QPushButton* _instantiationButton = nullptr;
    QPushButton* _hdlButton = nullptr;
    QPushButton* _benchButton = nullptr;
    MessageLabel* _message = nullptr;
    QComboBox* _fileCombo = nullptr;
    HdlView* _hdl = nullptr;
};

} // namespace Velmora
