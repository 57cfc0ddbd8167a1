#include <velmora/form/ProblemParts.h>

#include <velmora/form/Form.h>
#include <velmora/tables/LineTableModel.h>
#include <velmora/tables/LineTableView.h>

#include <Brindle/core/Exception.h>

#include <QRegularExpression>

#include <algorithm>

namespace Velmora {

namespace {

/// The length of the label at the beginning of the sentence; 0 when another word or section stands there.
int matchLabel(const QString& label, const QString& section, const QString& problem) {
    if (label.isEmpty() || !problem.startsWith(label))
        return 0;
    const QString rest = problem.mid(label.size());
    static const QRegularExpression otherWord(QStringLiteral("\\A\\w"));
    static const QRegularExpression titled(QStringLiteral("\\A \\((\\w[^()]*)\\)"));
    const QString title = titled.match(rest).captured(1);
    return otherWord.match(rest).hasMatch() || (!title.isEmpty() && title != section) ? 0 : label.size();
}

/// The parts with the longest label that fits.
class LongestMatch {
public:
    explicit LongestMatch(const QString& problem) : _problem(problem) {}

    void offer(const QString& label, const QString& section, const CheckedPart& part) {
        const int length = matchLabel(label, section, _problem);
        if (length > _length)
            _parts.clear();
        if (length > 0 && length >= _length)
            _parts.push_back(part);
        _length = std::max(_length, length);
    }
    const CheckedParts& getParts() const { return _parts; }

private:
    const QString& _problem;
    CheckedParts _parts;
    int _length = 0;
};

/// The cell of the column in the line that the sentence tells, else the table.
CheckedPart getCell(const FormTable& table, int column, const QString& problem) {
    static const QRegularExpression line(QStringLiteral("\\bline (\\d+)\\b"));
    bool isTold = false;
    const int row = line.match(problem).captured(1).toInt(&isTold);
    if (isTold && row < table.view->getRowCount())
        return CheckedCell{table.view, table.view->getModel()->item(row, column)};
    return static_cast<QWidget*>(table.view);
}

} // namespace

CheckedParts findParts(const Form& form, const QString& problem) {
    LongestMatch match(problem);
    for (const FormField& field : form.getFields())
        match.offer(field.label, field.section, field.widget);
    for (const FormTable& table : form.getTables()) {
        const LineTableModel& model = *table.view->getModel();
        for (int column = 1; column < model.columnCount(); ++column) {
            const QString header = model.headerData(column, Qt::Horizontal).toString();
            match.offer(header, table.section, getCell(table, column, problem));
        }
    }
    return match.getParts();
}

CheckedParts findPartsOf(const Form& form, const QStringList& keys) {
    CheckedParts parts;
    for (const FormField& field : form.getFields()) {
        if (keys.contains(field.key))
            parts.emplace_back(field.widget);
    }
    for (const FormTable& table : form.getTables()) {
        const QString name = table.view->objectName();
        if (keys.contains(name))
            parts.emplace_back(static_cast<QWidget*>(table.view));
        for (int row = 0; row < table.view->getRowCount(); ++row) {
            if (keys.contains(QStringLiteral("%1/%2").arg(name).arg(row)))
                parts.emplace_back(CheckedCell{table.view, table.view->getModel()->item(row, 1)});
        }
    }
    return parts;
}

CheckedParts findHolders(const Form& form, const Brindle::Exception& exception) {
    const QString value = QString::fromStdString(exception.getField("value"));
    CheckedParts parts;
    for (const FormField& field : form.getFields()) {
        const QVariant held = field.getValue();
        const QString text = held.toString();
        if (held.type() == QVariant::String && !text.isEmpty() && (text == value || '"' + text + '"' == value))
            parts.emplace_back(field.widget);
    }
    return parts;
}

QString describe(const Brindle::Exception& exception) {
    const QString text = QString::fromStdString(exception.getMessage());
    QStringList fields;
    for (const auto& [name, value] : exception.getFields()) {
        if (name != "key") // of the script's arguments
            fields += QString::fromStdString(name) + ": " + QString::fromStdString(value);
    }
    return fields.isEmpty() ? text : text + " (" + fields.join(QStringLiteral(", ")) + ")";
}

} // namespace Velmora
