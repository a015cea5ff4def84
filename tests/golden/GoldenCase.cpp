#include "tests/golden/GoldenCase.h"

#include <algorithm>
#include <cctype>
#include <sstream>
#include <utility>

#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Testing {

namespace {

namespace fs = std::filesystem;

std::string StatusText(int status) {
    return status == 0 ? "" : std::to_string(status) + "\n";
}

void Record(const fs::path& file, const std::string& content) {
    if (content.empty()) {
        fs::remove(file);
    } else {
        WriteFile(file, content);
    }
}

/// What differs in one part of the result, on lines that show every byte.
std::string Difference(const char* part, const std::string& expected, const std::string& actual) {
    if (expected == actual) {
        return "";
    }
    return std::string(part) + "\n  expected " + testing::PrintToString(expected) +
           "\n  actual   " + testing::PrintToString(actual) + "\n";
}

}  // namespace

GoldenCase::GoldenCase(fs::path folder) : _folder(std::move(folder)) {}

std::string GoldenCase::TestName() const {
    std::string name =
        _folder.parent_path().filename().string() + "_" + _folder.filename().string();
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

Result GoldenCase::Run(const fs::path& programs) const {
    const TemporaryDirectory directory;
    fs::create_symlink(_folder.parent_path().parent_path() / "data", directory.Path() / "data");

    Command command{{"/bin/sh", "-c", ReadFile(_folder / "cmd")}};
    command.input = ReadFile(_folder / "stdin");
    command.directory = directory.Path();
    command.environment = {"GOLDEN_CASE=" + _folder.string(),
                           "HOME=/nonexistent",
                           "LANG=C.UTF-8",
                           "PATH=" + programs.string() + ":/usr/bin:/bin",
                           "TZ=UTC"};
    std::istringstream variables(ReadFile(_folder / "env"));
    for (std::string variable; std::getline(variables, variable);) {
        command.environment.push_back(variable);
    }
    return RunProcess(command);
}

Result GoldenCase::Expected() const {
    const std::string status = ReadFile(_folder / "status");
    return {status.empty() ? 0 : std::stoi(status),
            ReadFile(_folder / "out"),
            ReadFile(_folder / "err")};
}

testing::AssertionResult GoldenCase::Check(const Result& actual) const {
    const Result expected = Expected();
    const std::string differences =
        Difference("out", expected.out, actual.out) + Difference("err", expected.err, actual.err) +
        Difference("status", StatusText(expected.status), StatusText(actual.status));
    return testing::AssertionResult(differences.empty()) << differences;
}

void GoldenCase::Accept(const Result& actual) const {
    Record(_folder / "out", actual.out);
    Record(_folder / "err", actual.err);
    Record(_folder / "status", StatusText(actual.status));
}

void PrintTo(const GoldenCase& goldenCase, std::ostream* stream) {
    *stream << goldenCase._folder;
}

std::vector<GoldenCase> FindGoldenCases(const fs::path& root) {
    std::vector<fs::path> folders;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        if (entry.path().filename() == "cmd") {
            folders.push_back(entry.path().parent_path());
        }
    }
    std::sort(folders.begin(), folders.end());
    return {folders.begin(), folders.end()};
}

}  // namespace Corvel::Testing
