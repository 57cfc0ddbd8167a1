#include <velmora/workbench/PreviewFeed.h>

#include <velmora/catalogue/IPLeaf.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Velmora {

namespace {

constexpr int pause = 200; // ms

/// The first error of a report, which says what led to the others.
QString getProblem(const QByteArray& json) {
    for (const QJsonValue message : QJsonDocument::fromJson(json)[0]["messages"].toArray()) {
        if (message["kind"].toString() == QLatin1String("error"))
            return message["text"].toString();
    }
    return QObject::tr("velmora-generate could not write the test bench.");
}

} // namespace

PreviewFeed::PreviewFeed(const QString& program, QObject* parent) : QObject(parent), _run(program, tr("No preview")) {
    _pause.setSingleShot(true);
    _pause.setInterval(pause);
    connect(&_pause, &QTimer::timeout, this, &PreviewFeed::ask);
}

void PreviewFeed::follow(IPLeaf* leaf) {
    if (leaf == _leaf)
        return;
    if (_leaf)
        disconnect(_leaf, &IPLeaf::edited, this, nullptr);
    _leaf = leaf;
    if (_leaf)
        connect(_leaf, &IPLeaf::edited, this, &PreviewFeed::onEdited);
    onEdited();
}

/// What runs is about what is no more.
void PreviewFeed::onEdited() {
    if (!_isWritingBench)
        _run.cancel();
    _pause.start();
}

void PreviewFeed::ask() {
    if (!_leaf || _isWritingBench)
        return;
    _run.ask({QStringLiteral("preview"), QStringLiteral("-"), QStringLiteral("--json")}, getContent(),
             [this, leaf = _leaf](const GeneratorRun::Outcome& outcome) {
                 if (leaf)
                     Q_EMIT found(leaf, outcome.problem.isEmpty() ? Preview::parse(outcome.output)
                                                                  : Preview::ofProblem(outcome.problem));
             });
}

QByteArray PreviewFeed::getContent() const {
    return QByteArray::fromStdString(_leaf->getConfiguration().getContent());
}

void PreviewFeed::writeBench(const QString& filename, const BenchReceiver& receiver) {
    if (_isWritingBench)
        return;
    _isWritingBench = true;
    _run.ask({QStringLiteral("bench"), QStringLiteral("-"), QStringLiteral("-o"), filename, QStringLiteral("--json")},
             getContent(), [this, receiver](const GeneratorRun::Outcome& outcome) {
                 _isWritingBench = false;
                 receiver(outcome.isDone || !outcome.problem.isEmpty() ? outcome.problem : getProblem(outcome.output));
                 onEdited(); // what the bench kept from being asked
             });
}

} // namespace Velmora
