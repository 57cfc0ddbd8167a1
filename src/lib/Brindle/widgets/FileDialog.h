#pragma once

#include <QString>

#include <functional>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace Brindle {

/// Asks the user where to read and write. The dialogs are Qt's own on every desktop; a program that runs unattended
/// replaces them by functions.
class FileDialog {
public:
    /// Takes parent, caption, proposed path and filter; returns the chosen path, empty when cancelled.
    using SaveFileNameFunction = std::function<QString(QWidget*, const QString&, const QString&, const QString&)>;
    /// Likewise.
    using OpenFileNameFunction = SaveFileNameFunction;
    /// Takes parent, caption and proposed path; returns the chosen path, empty when cancelled.
    using DirectoryFunction = std::function<QString(QWidget*, const QString&, const QString&)>;

    /// Asks for a file to write. The proposed path gives folder and name; a folder that does not exist is replaced by
    /// the nearest one above it. A name without extension gets the filter's ("VHDL (*.vhd)"), and the user confirms
    /// before an existing file is chosen. Returns the absolute path; empty when the user cancels.
    static QString getSaveFileName(QWidget* parent, const QString& caption, const QString& path, const QString& filter);

    /// Asks for an existing file. The proposed path gives the folder as above, and the name when there is such a file;
    /// a name can be given without the filter's extension. Returns the absolute path; empty when the user cancels.
    static QString getOpenFileName(QWidget* parent, const QString& caption, const QString& path, const QString& filter);

    /// Asks for a folder, which need not exist yet: the dialog opens in the nearest folder that does, with the rest of
    /// the proposed path filled in. Returns the absolute path; empty when the user cancels.
    static QString getDirectory(QWidget* parent, const QString& caption, const QString& path);

    /// From now on the function answers instead of a dialog; an empty function brings the dialog back.
    static void setSaveFileNameFunction(SaveFileNameFunction function);
    static void setOpenFileNameFunction(OpenFileNameFunction function);
    static void setDirectoryFunction(DirectoryFunction function);
};

} // namespace Brindle
