#pragma once

#include <QString>

namespace Velmora {

class LineTableView;

/// A table of lines in a form.
struct FormTable {
    LineTableView* view; ///< Not owned.
    QString countKey;    ///< The field that counts the lines.
};

} // namespace Velmora
