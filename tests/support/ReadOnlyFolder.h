#pragma once

#include <QFile>
#include <QFileInfo>
#include <QString>

#include <unistd.h>

#include <utility>

/// A folder in which nothing can be written while this lives. Permission bits do not bind root, so that a test that
/// runs as root has the rights of nobody meanwhile. A test asks `isEffective` and skips what it cannot try.
class ReadOnlyFolder {
public:
    explicit ReadOnlyFolder(QString path) : _path(std::move(path)) {
        const auto everybody =
            QFile::ReadUser | QFile::ExeUser | QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
        QFile::setPermissions(_path, QFile::ReadOwner | QFile::ExeOwner | everybody);
        if (_user == 0 && setegid(nobody) == 0 && seteuid(nobody) != 0)
            becomeUserAgain();
    }
    ReadOnlyFolder(const ReadOnlyFolder&) = delete;
    ReadOnlyFolder& operator=(const ReadOnlyFolder&) = delete;
    ~ReadOnlyFolder() {
        becomeUserAgain();
        QFile::setPermissions(_path, _permissions);
    }

    /// True when the folder can be read but not be written.
    bool isEffective() const {
        QFile probe(_path + QStringLiteral("/probe"));
        return euidaccess(QFile::encodeName(_path).constData(), R_OK | X_OK) == 0 && !probe.open(QFile::WriteOnly);
    }

private:
    static constexpr unsigned nobody = 65534;

    void becomeUserAgain() const {
        [[maybe_unused]] const int user = seteuid(_user);
        [[maybe_unused]] const int group = setegid(_group);
    }

    const QString _path;
    const QFile::Permissions _permissions = QFile::permissions(_path);
    const uid_t _user = geteuid();
    const gid_t _group = getegid();
};
