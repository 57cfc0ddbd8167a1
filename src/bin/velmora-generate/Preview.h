#pragma once

#include <velmora-generate/Catalogue.h>
#include <velmora-generate/GeneratedDesign.h>

#include <velmora/generation/ScriptAnswers.h>
#include <velmora/rules/HdlUnit.h>

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace GenerateTool {

/// What a configuration would give, as far as it could be found out.
struct Preview {
    bool isGood = false;                             ///< It would be generated, and no fact failed to be told.
    std::optional<Velmora::IPDescription> ip;        ///< Whose the configuration is.
    std::optional<Velmora::FailedCheck> failedCheck; ///< The first of the form's.
    std::vector<Velmora::Fact> facts;                ///< None when the script tells none.
    QStringList remarks;                             ///< What the designer should know.
    QStringList errors;                              ///< What went wrong, the failed check included.
    std::vector<GeneratedFile> files;                ///< What would be written.
    std::optional<Velmora::HdlUnit> unit;            ///< What a design instantiates.
};

/// Checks the form and runs `generate` and, when it succeeded, `describe`. Writes nothing and throws nothing; the
/// console gets the errors too.
Preview makePreview(const Catalogue& catalogue, const QString& filename);

} // namespace GenerateTool
