#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "fuzz/formatters/ReadBack.h"

namespace Corvel::Fuzz {

namespace {

/// Answers each literal on its standard input with a dump; before each message stands its size.
constexpr const char* kProgram = R"(
import ast, struct, sys

def dump(value):
    if isinstance(value, bool):
        return 'b1' if value else 'b0'
    if isinstance(value, int):
        return 'i%d' % value
    if isinstance(value, str):
        return 's' + value.encode().hex()
    if isinstance(value, list):
        return '[' + ','.join(map(dump, value)) + ']'
    return '{' + ','.join(k.encode().hex() + ':' + dump(v) for k, v in value.items()) + '}'

while size := sys.stdin.buffer.read(4):
    text = sys.stdin.buffer.read(struct.unpack('I', size)[0])
    try:
        answer = dump(ast.literal_eval(text.decode())).encode()
    except Exception as error:
        answer = repr(error).encode()
    sys.stdout.buffer.write(struct.pack('I', len(answer)) + answer)
    sys.stdout.buffer.flush()
)";

/// A Python process at the other end of a socket. It ends when this process does.
class Python {
public:
    Python() {
        int ends[2];
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
            throw std::runtime_error("no socket for Python");
        }
        if (fork() == 0) {
            dup2(ends[1], STDIN_FILENO);
            dup2(ends[1], STDOUT_FILENO);
            execlp("python3", "python3", "-I", "-S", "-c", kProgram, nullptr);
            _exit(127);
        }
        close(ends[1]);
        _socket = ends[0];
    }
    Python(const Python&) = delete;
    Python& operator=(const Python&) = delete;
    ~Python() { close(_socket); }

    std::string Ask(const std::string& question) {
        auto size = static_cast<std::uint32_t>(question.size());
        Send(&size, sizeof(size));
        Send(question.data(), question.size());
        Receive(&size, sizeof(size));
        std::string answer(size, '\0');
        Receive(answer.data(), answer.size());
        return answer;
    }

private:
    void Send(const void* data, std::size_t size) {
        for (const char* at = static_cast<const char*>(data); size > 0;) {
            const ssize_t sent =
                Finish([this, at, size] { return send(_socket, at, size, MSG_NOSIGNAL); });
            at += sent;
            size -= static_cast<std::size_t>(sent);
        }
    }

    void Receive(void* data, std::size_t size) {
        for (char* at = static_cast<char*>(data); size > 0;) {
            const ssize_t received =
                Finish([this, at, size] { return recv(_socket, at, size, 0); });
            at += received;
            size -= static_cast<std::size_t>(received);
        }
    }

    /// Calls again what the fuzzer's timer interrupted.
    template <typename Call>
    static ssize_t Finish(const Call& call) {
        ssize_t count = call();
        while (count < 0 && errno == EINTR) {
            count = call();
        }
        if (count <= 0) {
            throw std::runtime_error("python3 does not answer");
        }
        return count;
    }

    int _socket = -1;
};

}  // namespace

std::string ReadPython(const std::string& text) {
    static Python python;
    return python.Ask(text);
}

}  // namespace Corvel::Fuzz
