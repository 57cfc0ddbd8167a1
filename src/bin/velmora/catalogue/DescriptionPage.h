#pragma once

#include <functional>

class QString;
class QUrl;
class QWidget;

namespace Velmora {

/// The view of an IP's description page as its leaf sees it, so that programs without a window need nothing that
/// draws one.
class DescriptionPage {
public:
    using LinkHandler = std::function<void(const QUrl& link)>;
    using Maker = DescriptionPage* (*) (const QString& htmlFilename, const LinkHandler& onLink);

    virtual ~DescriptionPage() = default;

    /// Null in a program that is linked without one.
    static Maker maker;

    virtual QWidget* getWidget() = 0;
    /// Scrolls to the place of the page that the link names; false when it leads elsewhere.
    virtual bool goTo(const QUrl& link) = 0;
};

} // namespace Velmora
