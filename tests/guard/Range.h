#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "corvel/autocli/plugins/TemplateText.h"
#include "tests/guard/Shells.h"
#include "tests/support/ExpandedTemplate.h"

namespace Corvel::Testing {

/// @return whether the guard refuses the line.
bool IsRefused(const AutoCli::TemplateText& line);

/// Runs what the guard lets through, in every shell. Fails the test when a canary runs, or when a file is
/// written without a redirection. Prints at its end what it did.
class Range {
public:
    /// @param canaries  the names under which attacks find the canary.
    explicit Range(const std::vector<std::string>& canaries);
    ~Range();
    Range(const Range&) = delete;
    Range& operator=(const Range&) = delete;

    /// Has the guard judge the template with these values, and keeps the line if it comes through.
    void Attempt(const std::string& text, const CallValues& values);

    /// Runs what came through since the last time.
    /// @param text  its template.
    void Run(const std::string& text);

    /// Whether some shell runs what stands in the place of a value, or hangs, whatever that is.
    bool IsUnfit(const std::string& text);

private:
    Canaries _canaries;
    std::vector<std::unique_ptr<Aviary>> _aviaries;
    std::vector<std::string> _pending;
    std::unordered_map<std::string, CallValues> _values;
    std::size_t _attempts = 0;
    std::size_t _refused = 0;
    std::size_t _lines = 0;
};

}  // namespace Corvel::Testing
