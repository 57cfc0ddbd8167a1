#include <velmora/catalogue/DescriptionPage.h>

namespace Velmora {

DescriptionPage::Maker DescriptionPage::maker = nullptr;

} // namespace Velmora
