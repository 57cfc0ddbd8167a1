#pragma once

#include <Brindle/FileDialog.h>

#include <QString>
#include <QStringList>

/// Stands, while it lives, for the dialog that asks for a file to write.
struct SaveDialog {
    QString answer;    ///< What the user answers.
    QStringList asked; ///< Caption, proposed path and filter of the last question.

    SaveDialog() {
        Brindle::FileDialog::setSaveFileNameFunction(
            [this](QWidget*, const QString& caption, const QString& path, const QString& filter) {
                asked = QStringList{caption, path, filter};
                return answer;
            });
    }
    ~SaveDialog() { Brindle::FileDialog::setSaveFileNameFunction({}); }
    SaveDialog(const SaveDialog&) = delete;
    SaveDialog& operator=(const SaveDialog&) = delete;
};
