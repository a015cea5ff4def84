#pragma once

#include <filesystem>
#include <string>

namespace Corvel::Testing {

/// A fresh, empty folder of one test.
///
/// Ownership: removes the folder with everything in it when it goes.
/// Failures:  std::filesystem::filesystem_error, which fails the test.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    /// A folder elsewhere than where such folders usually are.
    explicit TemporaryDirectory(const std::filesystem::path& parent);
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory();

    const std::filesystem::path& Path() const;
    /// The absolute path of something in the folder; nothing is created.
    std::string File(const std::string& relativePath) const;
    /// Writes a file of the folder, and the folders that lead to it.
    /// @return its absolute path.
    std::string Write(const std::string& relativePath, const std::string& text) const;

private:
    std::filesystem::path _path;
};

/// The whole content of a file; empty when it cannot be read.
std::string ReadFile(const std::filesystem::path& file);

/// Makes a file with this content, or replaces its content.
void WriteFile(const std::filesystem::path& file, const std::string& text);

}  // namespace Corvel::Testing
