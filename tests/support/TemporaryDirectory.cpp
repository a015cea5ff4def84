#include "tests/support/TemporaryDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

namespace Corvel::Testing {

TemporaryDirectory::TemporaryDirectory()
    : TemporaryDirectory(std::filesystem::temp_directory_path()) {}

TemporaryDirectory::TemporaryDirectory(const std::filesystem::path& parent) {
    std::string name = parent / "corvel-test-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::filesystem::filesystem_error(
            "mkdtemp", name, std::error_code(errno, std::generic_category()));
    }
    _path = name;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
}

const std::filesystem::path& TemporaryDirectory::Path() const {
    return _path;
}

std::string TemporaryDirectory::File(const std::string& relativePath) const {
    return _path / relativePath;
}

std::string TemporaryDirectory::Write(const std::string& relativePath,
                                      const std::string& text) const {
    const std::filesystem::path file = _path / relativePath;
    std::filesystem::create_directories(file.parent_path());
    WriteFile(file, text);
    return file;
}

std::string ReadFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void WriteFile(const std::filesystem::path& file, const std::string& text) {
    std::ofstream stream(file, std::ios::binary);
    stream << text;
    stream.close();
    if (!stream) {
        throw std::filesystem::filesystem_error(
            "write", file, std::make_error_code(std::errc::io_error));
    }
}

}  // namespace Corvel::Testing
