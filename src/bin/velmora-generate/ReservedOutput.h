#pragma once

#include <Brindle/files/FileDescriptor.h>

namespace GenerateTool {

/// Keeps the standard output for one thing that another program reads: while it lives, what the console and scripts
/// print goes to standard error.
class ReservedOutput {
public:
    ReservedOutput();
    ReservedOutput(const ReservedOutput&) = delete;
    ReservedOutput& operator=(const ReservedOutput&) = delete;
    ~ReservedOutput();

    /// The standard output.
    const Brindle::FileDescriptor& get() const { return _standardOutput; }

private:
    Brindle::FileDescriptor _standardOutput; ///< Under a number of its own.
};

} // namespace GenerateTool
