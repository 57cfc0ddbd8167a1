#include <velmora-seal/TerminalPrompt.h>

#include <Brindle/core/Exception.h>
#include <Brindle/files/FileDescriptor.h>
#include <Brindle/files/SignalCleanup.h>

#include <array>
#include <string_view>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace SealTool {

namespace {

using Brindle::FileDescriptor;

[[noreturn]] void refuse() {
    throw Brindle::located(Brindle::Fatal("Unable to ask for the passphrase, give --passphrase-file"), BRINDLE_HERE);
}

/// The terminal without echo for as long as the object lives.
class SilentTerminal {
public:
    explicit SilentTerminal(const FileDescriptor& terminal)
        : _descriptor(terminal.get()), _earlier(getState(terminal)) {
        termios silent = _earlier;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHOE | ECHOK);
        silent.c_lflag |= static_cast<tcflag_t>(ICANON | ISIG | ECHONL);
        silent.c_cc[VSUSP] = _POSIX_VDISABLE; // Stopped, the program would leave the terminal silent.
        if (tcsetattr(_descriptor, TCSAFLUSH, &silent) != 0)
            refuse();
    }
    SilentTerminal(const SilentTerminal&) = delete;
    SilentTerminal& operator=(const SilentTerminal&) = delete;
    ~SilentTerminal() { restore(this); }

private:
    static termios getState(const FileDescriptor& terminal) {
        termios state{};
        if (!terminal.isOpen() || tcgetattr(terminal.get(), &state) != 0)
            refuse();
        return state;
    }

    static void restore(void* self) {
        const auto& terminal = *static_cast<const SilentTerminal*>(self);
        tcsetattr(terminal._descriptor, TCSAFLUSH, &terminal._earlier);
    }

    const int _descriptor;
    const termios _earlier;
    const Brindle::SignalCleanup _cleanup{restore, this};
};

/// Nothing at the end of the input or of the line.
bool readByte(const FileDescriptor& terminal, std::uint8_t& byte) {
    return terminal.read({&byte, 1}) == 1 && byte != '\n' && byte != '\r';
}

} // namespace

Sealwork::SecureBuffer askOnTerminal(const std::string& prompt, std::size_t longest) {
    const FileDescriptor terminal(open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY));
    const SilentTerminal silence(terminal);
    if (!terminal.write({reinterpret_cast<const std::uint8_t*>(prompt.data()), prompt.size()}))
        refuse();
    Sealwork::SecureBuffer line(longest + 1);
    std::size_t size = 0;
    for (std::uint8_t byte = 0; readByte(terminal, byte);)
        if (size < line.size())
            line.data()[size++] = byte;
    line.shrink(size);
    return line;
}

} // namespace SealTool
