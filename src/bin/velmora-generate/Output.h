#pragma once

#include <velmora-generate/ReservedOutput.h>

#include <Brindle/files/OutputFiles.h>

#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace GenerateTool {

/// Where the generations of one call write.
class Output {
public:
    /// `path` is that of the command line, as far as it gives one: the output of the one configuration, or a directory
    /// that exists, for the outputs of any number. One that is no file (standard output, another descriptor, a device,
    /// a pipe) gets nothing else: while the object lives, standard output is reserved. Throws UsageError when the path
    /// is empty, when there are several and it is no directory, and when it is where the JSON text goes to.
    Output(const std::optional<QString>& path, const QStringList& configurationFilenames, bool tellsJson);

    /// True when the entity names the output.
    bool isNamedByEntity() const { return !_path || _isDirectory; }

    /// The path of a configuration's file, or of its directory when it is generated as one. Throws Brindle::Fatal when
    /// the entity does not make a file name, and when the path is a configuration's, was taken already or cannot be
    /// what is generated.
    QString take(const QString& configurationFilename, const QString& entityName, bool isDirectory);
    /// Takes it for one that was written by another process.
    void setTaken(const QString& path);
    /// Whether this absolute path was taken, as a claim tells it.
    bool isTaken(const QString& absolutePath) const { return _taken.contains(absolutePath); }
    /// Asked for the absolute path that is about to be taken; true when another process has it.
    void setClaim(std::function<bool(const QString& absolutePath)> claim) { _claim = std::move(claim); }

    /// Adds the content of a path that was taken, or of one below it.
    void add(Brindle::OutputFiles& files, const QString& path, std::string content) const;

private:
    QString getPath(const QString& configurationFilename, const QString& entityName, bool isDirectory) const;

    const std::optional<QString> _path;
    const bool _isDirectory;
    bool _isStream = false;
    bool _isStandardOutput = false;
    std::optional<ReservedOutput> _reserved;
    QSet<QString> _configurations; // absolute paths
    QSet<QString> _taken;          // absolute paths
    std::function<bool(const QString&)> _claim;
};

} // namespace GenerateTool
