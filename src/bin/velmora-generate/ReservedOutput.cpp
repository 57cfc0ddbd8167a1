#include <velmora-generate/ReservedOutput.h>

#include <cstdio>
#include <iostream>

#include <fcntl.h>
#include <unistd.h>

namespace GenerateTool {

namespace {

/// What scripts print is kept by the C library for a while.
void redirectOutput(int descriptor) {
    std::cout.flush();
    std::fflush(stdout);
    dup2(descriptor, STDOUT_FILENO);
}

} // namespace

ReservedOutput::ReservedOutput() : _standardOutput(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)) {
    redirectOutput(STDERR_FILENO);
}

ReservedOutput::~ReservedOutput() {
    redirectOutput(_standardOutput.get());
}

} // namespace GenerateTool
