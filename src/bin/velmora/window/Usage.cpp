#include <velmora/window/Usage.h>

#include <Brindle/core/Console.h>

namespace Velmora {

void usage() {
    using Brindle::console;
    console.print("Usage: velmora [options]", "");
    console.indent();
    console.print("Options are:", "");
    console.indent();
    console.print("-check         : Execute check syntax on benchs", "");
    console.print("", "");
    console.print("-help          : print this help", "");
}

} // namespace Velmora
