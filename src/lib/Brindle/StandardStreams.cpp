#include <Brindle/StandardStreams.h>

#include <fcntl.h>
#include <unistd.h>

namespace Brindle {

void completeStandardStreams() {
    int descriptor = open("/dev/null", O_RDWR); // takes the lowest number that is free
    while (descriptor >= 0 && descriptor <= STDERR_FILENO)
        descriptor = open("/dev/null", O_RDWR);
    if (descriptor >= 0)
        close(descriptor);
}

} // namespace Brindle
