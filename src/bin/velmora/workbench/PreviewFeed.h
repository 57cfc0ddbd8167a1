#pragma once

#include <velmora/workbench/GeneratorRun.h>
#include <velmora/workbench/Preview.h>

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>

namespace Velmora {

class IPLeaf;

/// Asks velmora-generate what the form of the page that is shown would give, 200 ms after the last edit.
class PreviewFeed : public QObject {
    Q_OBJECT

public:
    /// `program` is the path of velmora-generate.
    explicit PreviewFeed(const QString& program, QObject* parent = nullptr);

    /// Follows the form of that page, which is kept, not owned, and no other; null for none.
    void follow(IPLeaf* leaf);

    /// Is told what is wrong; empty when the bench was written.
    using BenchReceiver = std::function<void(const QString& problem)>;
    /// Writes the test bench of what the form would give.
    void writeBench(const QString& filename, const BenchReceiver& receiver);

Q_SIGNALS:
    /// What the form of that page would give as it is now.
    void found(IPLeaf* leaf, const Preview& preview);

private:
    void onEdited();
    void ask();
    QByteArray getContent() const;

    GeneratorRun _run;
    QTimer _pause; // since the last edit
    QPointer<IPLeaf> _leaf;
    bool _isWritingBench = false;
};

} // namespace Velmora
