#include <velmora/workbench/PreviewSheet.h>

#include <velmora/workbench/EntitySymbol.h>
#include <velmora/workbench/PageMargin.h>
#include <velmora/workbench/Preview.h>

#include <Brindle/widgets/Theme.h>

#include <QBoxLayout>
#include <QLabel>
#include <QScrollBar>

#include <algorithm>

namespace Velmora {

namespace {

// Pixels.
constexpr int textWidth = 240;   // for facts beside the symbol
constexpr int symbolWidth = 280; // that is expected

constexpr std::size_t mostFacts = 100;  // that are shown
constexpr int mostRemarks = 100;        // the same
constexpr int longestRemark = 1000;     // characters of one
constexpr std::size_t mostPorts = 1000; // of the symbol

QString toHtml(const QString& text) {
    return text.left(longestRemark).toHtmlEscaped();
}

QString toTable(const std::vector<Preview::Fact>& facts) {
    QString rows;
    for (std::size_t index = 0; index < std::min(mostFacts, facts.size()); ++index) {
        rows += QStringLiteral("<tr><td style=\"color:%1;padding-right:12px\">%2</td><td>%3</td></tr>")
                    .arg(Brindle::theme.getColorName("muted"), toHtml(facts[index].label), toHtml(facts[index].value));
    }
    return rows.isEmpty() ? QString() : "<table cellspacing=\"0\" cellpadding=\"1\">" + rows + "</table>";
}

QString toParagraphs(const QStringList& texts, const char* colorName) {
    QString paragraphs;
    for (const QString& text : texts.mid(0, mostRemarks)) {
        paragraphs += QStringLiteral("<p style=\"color:%1;margin:0 0 4px 0\">%2</p>")
                          .arg(Brindle::theme.getColorName(colorName), toHtml(text));
    }
    return paragraphs;
}

/// A label whose text can be selected and copied.
QLabel* createText(const char* name, const QString& accessibleName) {
    auto* label = new QLabel;
    label->setObjectName(QLatin1String(name));
    label->setAccessibleName(accessibleName);
    label->setTextFormat(Qt::RichText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    return label;
}

void setText(QLabel* label, const QString& text) {
    label->setText(text);
    label->setVisible(!text.isEmpty());
}

} // namespace

PreviewSheet::PreviewSheet(QWidget* parent) : QScrollArea(parent), _symbol(new EntitySymbol(nullptr)) {
    setObjectName(QStringLiteral("previewSheet"));
    setAccessibleName(tr("Facts and symbol"));
    setFocusPolicy(Qt::StrongFocus); // the arrows scroll
    setWidgetResizable(true);
    setMinimumSize(160, 40);
    _remarks = createText("previewRemarks", tr("Remarks"));
    _facts = createText("previewFacts", tr("Facts"));
    auto* texts = new QVBoxLayout;
    texts->setSpacing(pageMargin / 2);
    texts->addWidget(_remarks);
    texts->addWidget(_facts);
    texts->addStretch(1);
    auto* sheet = new QWidget;
    _layout = new QBoxLayout(QBoxLayout::TopToBottom, sheet);
    _layout->setContentsMargins(pageMargin, pageMargin / 2, pageMargin, pageMargin / 2);
    _layout->addLayout(texts, 1);
    _layout->addWidget(_symbol, 0, Qt::AlignTop | Qt::AlignLeft);
    setWidget(sheet);
    Brindle::theme.enrich(this);
}

void PreviewSheet::setPreview(const Preview& preview) {
    QStringList wrong{preview.problem, preview.error};
    wrong.removeAll(QString());
    setText(_remarks, toParagraphs(wrong, preview.problem.isEmpty() ? "error" : "remark") +
                          toParagraphs(preview.remarks, "remark"));
    setText(_facts, toTable(preview.facts));
    auto ports = preview.ports;
    ports.resize(std::min(mostPorts, ports.size()));
    _symbol->setEntity(preview.entity, ports);
    arrange();
}

QSize PreviewSheet::sizeHint() const {
    return {textWidth + symbolWidth + 4 * pageMargin, QScrollArea::sizeHint().height()};
}

void PreviewSheet::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    arrange();
}

void PreviewSheet::arrange() {
    const bool isWide = viewport()->width() >= textWidth + _symbol->sizeHint().width() + 3 * pageMargin;
    _layout->setDirection(isWide ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
}

} // namespace Velmora
