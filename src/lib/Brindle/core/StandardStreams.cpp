#include <Brindle/core/StandardStreams.h>

#include <initializer_list>

#include <fcntl.h>
#include <unistd.h>

namespace Brindle {

void completeStandardStreams() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(descriptor, F_GETFD) < 0) // The lowest number that is free is taken.
            open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

} // namespace Brindle
