#include <Brindle/core/StandardStreams.h>

#include <fcntl.h>
#include <unistd.h>

namespace Brindle {

void completeStandardStreams() {
    int descriptor = open("/dev/null", O_RDONLY); // takes the lowest number that is free
    while (descriptor >= 0 && descriptor <= STDERR_FILENO)
        descriptor = open("/dev/null", O_RDONLY);
    if (descriptor >= 0)
        close(descriptor);
}

} // namespace Brindle
