#pragma once

#include <Brindle/widgets/FileDialog.h>

#include <QString>
#include <QStringList>

/// Stands, while it lives, for the dialogs that ask for a file or a directory.
struct PathDialogs {
    QString answer;               ///< What the user answers; null when the dialog is cancelled.
    bool acceptsProposal = false; ///< The user takes what is proposed instead.
    QStringList asked;            ///< Caption, proposed path and, for a file, filter of the last question.

    PathDialogs() {
        const auto answerFile = [this](QWidget*, const QString& caption, const QString& path, const QString& filter) {
            return getAnswer({caption, path, filter});
        };
        Brindle::FileDialog::setSaveFileNameFunction(answerFile);
        Brindle::FileDialog::setOpenFileNameFunction(answerFile);
        Brindle::FileDialog::setDirectoryFunction([this](QWidget*, const QString& caption, const QString& path) {
            return getAnswer({caption, path});
        });
    }
    ~PathDialogs() {
        Brindle::FileDialog::setSaveFileNameFunction({});
        Brindle::FileDialog::setOpenFileNameFunction({});
        Brindle::FileDialog::setDirectoryFunction({});
    }
    PathDialogs(const PathDialogs&) = delete;
    PathDialogs& operator=(const PathDialogs&) = delete;

private:
    QString getAnswer(const QStringList& question) {
        asked = question;
        return acceptsProposal ? question.at(1) : answer;
    }
};
