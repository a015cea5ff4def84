#include "corvel/platform/FileDescriptor.h"

#include <errno.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <utility>

namespace Corvel::Platform {

namespace {

/// As much as a pipe holds by default, so that one read can empty it.
constexpr std::size_t kChunkSize = 65536;

/// A text that is larger than this is likely to become much larger.
constexpr std::size_t kLargeText = 2 * kChunkSize;
constexpr std::size_t kLargestSpareRoom = std::size_t{256} << 20;

/// What is left behind in growing has been touched, and copied; room that is not touched costs
/// nothing. So a large text grows in larger steps than a string does by itself.
void Append(std::string& text, std::string_view piece) {
    const std::size_t size = text.size() + piece.size();
    if (size > text.capacity() && size > kLargeText) {
        text.reserve(size + std::min(3 * size, kLargestSpareRoom));
    }
    text += piece;
}

/// Holds SIGPIPE back from this thread. One that was raised meanwhile is consumed, one that was
/// already pending stays so.
class SigpipeBlock {
public:
    SigpipeBlock() noexcept {
        sigset_t pending;
        sigpending(&pending);
        _wasPending = sigismember(&pending, SIGPIPE) == 1;
        sigemptyset(&_sigpipe);
        sigaddset(&_sigpipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &_sigpipe, &_savedMask);
    }
    SigpipeBlock(const SigpipeBlock&) = delete;
    SigpipeBlock& operator=(const SigpipeBlock&) = delete;
    ~SigpipeBlock() { pthread_sigmask(SIG_SETMASK, &_savedMask, nullptr); }

    void Consume() const noexcept {
        // Not repeated on EINTR: what does not wait is never interrupted.
        const timespec atOnce{};
        if (!_wasPending) {
            sigtimedwait(&_sigpipe, nullptr, &atOnce);
        }
    }

private:
    sigset_t _sigpipe;
    sigset_t _savedMask;
    bool _wasPending;
};

}  // namespace

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    if (this != &other) {
        Close();
        _descriptor = other.Release();
    }
    return *this;
}

int FileDescriptor::Release() noexcept {
    return std::exchange(_descriptor, -1);
}

void FileDescriptor::Close() noexcept {
    if (IsOpen()) {
        // Not repeated on EINTR: Linux has let go of the descriptor even then.
        close(Release());
    }
}

int FileDescriptor::WriteAll(std::string_view text) const noexcept {
    const SigpipeBlock sigpipe;
    while (!text.empty()) {
        const ssize_t written = write(_descriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            const int error = errno;
            if (error == EPIPE) {
                sigpipe.Consume();
            }
            return error;
        }
    }
    return 0;
}

int FileDescriptor::ReadToEnd(std::string& text) const {
    std::array<char, kChunkSize> chunk;
    while (true) {
        const ssize_t size = read(_descriptor, chunk.data(), chunk.size());
        if (size > 0) {
            Append(text, {chunk.data(), static_cast<std::size_t>(size)});
        } else if (size == 0) {
            return 0;
        } else if (errno != EINTR) {
            return errno;
        }
    }
}

}  // namespace Corvel::Platform
