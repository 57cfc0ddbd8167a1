#pragma once

#include <velmora/rules/Configuration.h>

#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

namespace GenerateTool {

/// Where the generations of one call write.
class Output {
public:
    /// `path` is that of the command line, as far as it gives one: the output of the one configuration, or the
    /// directory of those of several. Throws UsageError when it is empty, and when there are several and it is no
    /// directory.
    Output(const std::optional<QString>& path, const QStringList& configurationFilenames);

    /// True when the entity names the output.
    bool isNamedByEntity() const { return !_path || _isShared; }

    /// The path of a configuration's file, or of its directory when it is generated as one. Throws Brindle::Fatal when
    /// the entity does not make a file name, and when the path is a configuration's or was taken already.
    QString take(const QString& configurationFilename, const QString& entityName, bool isDirectory);

private:
    QString getPath(const QString& configurationFilename, const QString& entityName, bool isDirectory) const;

    const std::optional<QString> _path;
    const bool _isShared;
    QSet<QString> _configurations; // absolute paths
    QSet<QString> _taken;          // absolute paths
};

} // namespace GenerateTool
