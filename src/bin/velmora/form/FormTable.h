#pragma once

#include <QString>

namespace Velmora {

class LineTableView;

/// A table of lines in a form.
struct FormTable {
    LineTableView* view; ///< Not owned.
    QString countKey;    ///< The field that counts the lines.
    QString section;     ///< Title of the section that it stands in; empty outside.
};

} // namespace Velmora
