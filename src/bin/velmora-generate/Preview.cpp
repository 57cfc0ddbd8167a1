#include <velmora-generate/Preview.h>

#include <velmora-generate/ConfiguredIP.h>
#include <velmora-generate/ToldLines.h>

#include <velmora/form/Form.h>
#include <velmora/generation/GeneratorScript.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>

#include <exception>

namespace GenerateTool {

namespace {

using Brindle::console;
using Velmora::Generation;

/// Does a part of the work; false when it showed an error. What it told besides are remarks, each once.
template <class Work>
bool doPart(Preview& preview, Work work) {
    ToldLines told;
    const unsigned long errorCount = console.getErrorCount();
    if (!work())
        told.takeTextsForErrors();
    preview.errors += told.getErrors();
    for (const QString& remark : told.getTexts()) {
        if (!preview.remarks.contains(remark))
            preview.remarks += remark;
    }
    return console.getErrorCount() == errorCount;
}

/// The check that the form's mark shows, or else the last that the console told.
Velmora::FailedCheck getFailedCheck(const Velmora::CheckMark& mark, const QStringList& errors) {
    if (!mark.getProblem().isEmpty())
        return {mark.getProblem(), mark.getKeys()};
    return {errors.isEmpty() ? QString() : errors.last(), {}};
}

void addFacts(Preview& preview, const Velmora::IPLeaf& leaf, const Generation& generation) {
    const Velmora::GeneratorScript script(leaf.getScriptFilename());
    if (auto facts = script.describe(generation.getArguments()))
        preview.facts = std::move(*facts);
}

bool fill(Preview& preview, const ConfiguredIP& configured) {
    const Generation generation = configured.leaf->getGeneration();
    bool isChecked = false;
    doPart(preview, [&] { return isChecked = generation.check(); });
    if (!isChecked) {
        preview.failedCheck = getFailedCheck(configured.leaf->getForm()->getMark(), preview.errors);
        return false;
    }
    const auto doGuarded = [&](const auto& work) {
        return doPart(preview, [&] {
            return generation.runGuarded(BRINDLE_HERE, [&work] {
                work();
                return true;
            });
        });
    };
    if (!doGuarded([&] { preview.files = generateFiles(generation); })) {
        preview.files.clear(); // of comments alone, which would not be written
        return false;
    }
    preview.unit = findUnit(preview.files, generation.entityName);
    return doGuarded([&] { addFacts(preview, *configured.leaf, generation); });
}

std::optional<ConfiguredIP> load(Preview& preview, const Catalogue& catalogue, const QString& filename) {
    std::optional<ConfiguredIP> configured;
    doPart(preview, [&] {
        try {
            configured = loadConfigured(catalogue, filename);
        } catch (const Brindle::Exception& exception) {
            console.error(exception);
        } catch (const std::exception& exception) {
            console.error(exception.what());
        }
        return configured.has_value();
    });
    return configured;
}

} // namespace

Preview makePreview(const Catalogue& catalogue, const QString& filename) {
    Preview preview;
    if (const auto configured = load(preview, catalogue, filename)) {
        preview.ip = configured->ip.description;
        preview.isGood = fill(preview, *configured);
    }
    return preview;
}

} // namespace GenerateTool
