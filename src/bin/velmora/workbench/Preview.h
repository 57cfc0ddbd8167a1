#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

namespace Velmora {

/// What a form would generate, as far as it could be found out.
struct Preview {
    struct Fact {
        QString label;
        QString value; ///< With its unit.
    };
    struct Port {
        QString name;
        QString mode; ///< As the language has it: "in", "output".
        QString type;
    };
    struct File {
        QString name;
        QString text; ///< Its protected regions are enciphered.
    };

    QString problem;          ///< Why there is no preview; what follows is empty then.
    QString error;            ///< What is wrong with the form, or ended the generation; empty when nothing is.
    QStringList failedFields; ///< Keys of the form that the error is about, if it comes from the form's check.
    QStringList remarks;
    std::vector<Fact> facts;
    QString entity; ///< Name of what a design instantiates; empty when there is none.
    std::vector<Port> ports;
    QString instantiation; ///< What is pasted into a design, in commented parts; empty when there is none.
    std::vector<File> files;

    /// A preview that says why it is none.
    static Preview ofProblem(const QString& problem);
    /// Reads what "velmora-generate preview - --json" answers. What is no such answer gives a problem.
    static Preview parse(const QByteArray& json);
};

} // namespace Velmora
