#pragma once

#include <velmora/workbench/Preview.h>

#include <QWidget>

#include <string>
#include <vector>

QT_BEGIN_NAMESPACE
class QMenu;
QT_END_NAMESPACE

namespace Velmora {

class IPLeaf;
class TextButton;

/// The line below a form that tells what would be generated: the first facts, or the first thing that is wrong with the
/// form, or the first remark. A click on the latter two goes to the field. Beside it stands what was written last.
class SummaryLine : public QWidget {
    Q_OBJECT

public:
    /// The page is kept, not owned.
    explicit SummaryLine(IPLeaf& leaf);

    void setPreview(const Preview& preview);
    /// The files of the last generation.
    void setFiles(const std::vector<std::string>& filenames);

private:
    void goToField();

    IPLeaf& _leaf;
    TextButton* _text;
    TextButton* _filesButton;
    QMenu* _filesMenu;
    Preview _preview;
};

} // namespace Velmora
