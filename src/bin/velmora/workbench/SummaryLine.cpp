#include <velmora/workbench/SummaryLine.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/form/Form.h>
#include <velmora/form/ProblemParts.h>
#include <velmora/workbench/TextButton.h>

#include <Brindle/widgets/FileMenus.h>
#include <Brindle/widgets/Theme.h>

#include <QHBoxLayout>
#include <QMenu>

#include <algorithm>

namespace Velmora {

namespace {

constexpr std::size_t factCount = 4;

QString joinFacts(const std::vector<Preview::Fact>& facts) {
    QStringList texts;
    for (std::size_t index = 0; index < std::min(factCount, facts.size()); ++index)
        texts += facts[index].label + " " + facts[index].value;
    return texts.join(QStringLiteral("   \u00b7   "));
}

} // namespace

SummaryLine::SummaryLine(IPLeaf& leaf)
    : QWidget(&leaf),
      _leaf(leaf),
      _text(new TextButton(this)),
      _filesButton(new TextButton(this)),
      _filesMenu(new QMenu(this)) {
    setObjectName(QStringLiteral("summaryLine"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_text, 1);
    layout->addWidget(_filesButton);
    _text->setObjectName(QStringLiteral("summaryText"));
    connect(_text, &TextButton::clicked, this, &SummaryLine::goToField);
    _filesButton->setObjectName(QStringLiteral("writtenFiles"));
    _filesButton->setLine(tr("Written files..."), "link", true);
    _filesButton->hide();
    connect(_filesButton, &TextButton::clicked, this, [this] {
        const int height = _filesMenu->sizeHint().height();
        _filesMenu->popup(_filesButton->mapToGlobal(QPoint(0, -height)));
    });
}

void SummaryLine::setPreview(const Preview& preview) {
    _preview = preview;
    if (!preview.problem.isEmpty())
        _text->setLine(preview.problem, "remark", false);
    else if (!preview.error.isEmpty())
        _text->setLine(preview.error, "error", true);
    else if (!preview.remarks.isEmpty())
        _text->setLine(preview.remarks.first(), "remark", true);
    else
        _text->setLine(joinFacts(preview.facts), "text", false);
}

/// What is wrong is marked there, as by a check.
void SummaryLine::goToField() {
    const Form& form = *_leaf.getForm();
    if (_preview.error.isEmpty()) {
        CheckMark::goTo(findParts(form, _preview.remarks.value(0)));
        return;
    }
    CheckedParts parts = findPartsOf(form, _preview.failedFields);
    if (parts.empty())
        parts = findParts(form, _preview.error);
    if (!parts.empty())
        form.getMark().set(parts, _preview.error);
}

void SummaryLine::setFiles(const std::vector<std::string>& filenames) {
    _filesMenu->clear();
    Brindle::addFileMenus(*_filesMenu, filenames);
    _filesButton->setVisible(!filenames.empty());
}

} // namespace Velmora
