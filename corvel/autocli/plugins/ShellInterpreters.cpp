#include "corvel/autocli/plugins/ShellInterpreters.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include "corvel/autocli/plugins/ShellCommandMarker.h"
#include "corvel/autocli/plugins/ShellVariables.h"

namespace Corvel::AutoCli {

namespace {

/// Finds the commands whose output some interpreter reads as code, going through the line backwards.
class CodeFeeders {
public:
    explicit CodeFeeders(ShellLine& line)
        : _line(line),
          _feeds(line.feeders.size()),
          _beginning(line.feeders.size()),
          _ending(line.feeders.size()) {}

    /// To be called for each command, the last one first.
    void Pass(std::size_t command, bool readsInput) {
        _open += _ending[command];
        _feeds[command] = _open > 0;
        const ShellCommands& feeders = _line.feeders[command];
        if ((_feeds[command] || readsInput) && !feeders.IsEmpty()) {
            ++_beginning[feeders.begin];
            ++_ending[feeders.end - 1];
        }
        _open -= _beginning[command];
    }

    /// Marks all that stands in those commands.
    void MarkWords() {
        for (ShellWord& word : _line.words) {
            word.isCode |= _feeds[word.command];
        }
    }

private:
    ShellLine& _line;
    std::vector<bool> _feeds;
    /// How many ranges of feeders begin or end with each command.
    std::vector<std::uint32_t> _beginning;
    std::vector<std::uint32_t> _ending;
    /// How many of them hold the present command.
    std::uint32_t _open = 0;
};

}  // namespace

void MarkInterpretedWords(ShellLine& line) {
    const std::size_t count = line.feeders.size();
    std::vector<std::vector<ShellWord*>> commands(count);
    for (ShellWord& word : line.words) {
        if (word.place == ShellPlace::Command ||
            (word.place == ShellPlace::Argument && !commands[word.command].empty())) {
            commands[word.command].push_back(&word);
        }
    }
    CodeFeeders feeders(line);
    bool hasTypes = false;
    bool mayBeAnything = false;
    for (std::size_t i = count; i-- > 0;) {
        ShellCommandMarker marker(commands[i]);
        marker.Run();
        hasTypes |= marker.DeclaresTypes();
        feeders.Pass(i, marker.ReadsInput());
        mayBeAnything |= marker.DefinesAlias() || (marker.ReadsInput() && line.hasFunctions);
    }
    feeders.MarkWords();
    MarkAssignedCode(line, hasTypes);
    for (ShellWord& word : line.words) {
        word.isCode |= mayBeAnything;
    }
}

}  // namespace Corvel::AutoCli
