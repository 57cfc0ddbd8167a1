#include <velmora/ips/filters/CoefficientsEditor.h>

#include <velmora/fields/StoredValue.h>
#include <velmora/rules/Coefficients.h>

#include <Brindle/widgets/Theme.h>

#include <QObject>
#include <QStringList>
#include <QTextCursor>

namespace Velmora {

QString CoefficientsEditor::getExpectation() const {
    return QObject::tr("a list of coefficients separated by \", \"");
}

QJsonObject CoefficientsEditor::getDescription() const {
    return {{"kind", "coefficients"}};
}

QString CoefficientsEditor::toText(const QVariant& value) const {
    QStringList coefficients;
    for (const std::string& coefficient : parseCoefficients(value.toString().toStdString()))
        coefficients += QString::fromStdString(coefficient);
    return coefficients.join(QStringLiteral(", "));
}

QTextEdit* CoefficientsEditor::create(QWidget* parent) const {
    auto* textEdit = new QTextEdit(parent);
    textEdit->setAcceptRichText(false);
    textEdit->setTabChangesFocus(true);
    textEdit->setStyleSheet("background: " + Brindle::theme.getColorName("background_text") + ";");
    Brindle::theme.enrich(textEdit);
    return textEdit;
}

QVariant CoefficientsEditor::getValue(const QWidget* widget) const {
    return widgetAs<const QTextEdit>(widget).toPlainText();
}

void CoefficientsEditor::setValue(QWidget* widget, const QVariant& value) const {
    auto& textEdit = widgetAs<QTextEdit>(widget);
    const auto text = readText(value);
    if (!text || *text == textEdit.toPlainText())
        return;
    QTextCursor cursor(textEdit.document());
    cursor.select(QTextCursor::Document);
    cursor.insertText(*text);
    textEdit.moveCursor(QTextCursor::Start);
}

void CoefficientsEditor::forgetEdits(QWidget* widget) const {
    widgetAs<QTextEdit>(widget).document()->clearUndoRedoStacks();
}

} // namespace Velmora
