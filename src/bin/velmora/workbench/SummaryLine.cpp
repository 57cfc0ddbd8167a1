#include <velmora/workbench/SummaryLine.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/form/Form.h>
#include <velmora/form/ProblemParts.h>
#include <velmora/workbench/TextButton.h>

#include <Brindle/widgets/FileMenus.h>
#include <Brindle/widgets/Theme.h>

#include <QHBoxLayout>
#include <QMenu>
#include <QToolButton>

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
    : QWidget(&leaf), _leaf(leaf), _text(new TextButton(this)), _filesButton(new QToolButton(this)) {
    setObjectName(QStringLiteral("summaryLine"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_text, 1);
    layout->addWidget(_filesButton);
    _filesButton->setObjectName(QStringLiteral("writtenFiles"));
    _filesButton->setText(tr("Written files"));
    _filesButton->setToolTip(tr("What the last generation has written"));
    _filesButton->setAutoRaise(true);
    _filesButton->setPopupMode(QToolButton::InstantPopup);
    _filesButton->setToolButtonStyle(Qt::ToolButtonTextOnly);
    _filesButton->setFocusPolicy(Qt::StrongFocus);
    _filesButton->setMenu(new QMenu(_filesButton));
    _filesButton->hide();
    connect(_text, &TextButton::clicked, this, &SummaryLine::goToField);
}

void SummaryLine::setPreview(const Preview& preview) {
    _preview = preview;
    if (!preview.problem.isEmpty())
        _text->show(preview.problem, "remark", false);
    else if (!preview.error.isEmpty())
        _text->show(preview.error, "error", true);
    else if (!preview.remarks.isEmpty())
        _text->show(preview.remarks.first(), "remark", true);
    else
        _text->show(joinFacts(preview.facts), "text", false);
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
    _filesButton->menu()->clear();
    Brindle::addFileMenus(*_filesButton->menu(), filenames);
    _filesButton->setVisible(!filenames.empty());
}

} // namespace Velmora
