#pragma once

#include <QString>

namespace Brindle {

/// A proposed path, split where its existing part ends.
struct PathParts {
    QString folder; ///< The nearest folder above the path's last component that exists, absolute.
    QString rest;   ///< What follows it, without a leading "/".

    /// An empty path gives the working directory and nothing else.
    static PathParts split(const QString& path);
};

} // namespace Brindle
