#include "corvel/autocli/plugins/ConditionalRemoval.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Corvel::AutoCli {

namespace {

/// Recognises the head of a conditional, "$if{name,", one character at a time after the "$".
class ConditionalHead {
public:
    void Read(char c) {
        if (_state < kOpening.size()) {
            _state = c == kOpening[_state] ? _state + 1 : kFailed;
        } else if (_state <= kInName) {
            const bool isNameEnd = c == ',' && _state == kInName;
            _state = isNameEnd ? kComplete : IsNameCharacter(c) ? kInName : kFailed;
        }
    }
    bool IsOpen() const { return _state < kComplete; }
    bool IsComplete() const { return _state == kComplete; }

private:
    /// States below its size: so many characters of it have been read.
    static constexpr std::string_view kOpening = "if{";
    static constexpr std::size_t kInName = kOpening.size() + 1;
    static constexpr std::size_t kComplete = kInName + 1;
    static constexpr std::size_t kFailed = kComplete + 1;

    static bool IsNameCharacter(char c) {
        return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-';
    }

    std::size_t _state = 0;
};

struct Span {
    std::size_t begin;
    std::size_t end;
};

std::vector<Span> FindHeads(const std::string& characters) {
    std::vector<Span> heads;
    for (std::size_t dollar = characters.find('$'); dollar != std::string::npos;
         dollar = characters.find('$', dollar + 1)) {
        ConditionalHead head;
        std::size_t end = dollar + 1;
        while (end < characters.size() && head.IsOpen()) {
            head.Read(characters[end++]);
        }
        if (head.IsComplete()) {
            heads.push_back({dollar, end});
        }
    }
    return heads;
}

/// @return for each opening brace the position after its partner, 0 for one that has none.
std::vector<std::size_t> PairBraces(const std::string& characters) {
    std::vector<std::size_t> ends(characters.size(), 0);
    std::vector<std::size_t> opened;
    for (std::size_t i = 0; i < characters.size(); ++i) {
        if (characters[i] == '{') {
            opened.push_back(i);
        } else if (characters[i] == '}' && !opened.empty()) {
            ends[opened.back()] = i + 1;
            opened.pop_back();
        }
    }
    return ends;
}

class ConditionalRemover {
public:
    ConditionalRemover(const TemplateText& text, std::vector<Span> heads)
        : _text(text),
          _characters(text.Characters()),
          _heads(std::move(heads)),
          _groupEnds(PairBraces(_characters)) {}

    TemplateText Run() {
        std::size_t brace = 0;
        while ((brace = _characters.find('{', _done)) != std::string::npos) {
            KeepUpTo(brace);
            const std::size_t groupEnd = _groupEnds[brace];
            if (groupEnd == 0) {
                KeepUpTo(brace + 1);
            } else if (HoldsConditional(brace, groupEnd)) {
                const std::size_t dropped = DropFromLastDollar();
                _done = groupEnd;
                KeepUpTo(_text.PositionBehind(groupEnd, dropped));
            } else {
                KeepUpTo(groupEnd);
            }
        }
        KeepUpTo(_characters.size());
        return std::move(_kept);
    }

private:
    struct Dollar {
        std::size_t position;
        ConditionalHead head;
    };

    void KeepUpTo(std::size_t end) {
        for (std::size_t i = _done; i < end; ++i) {
            if (_characters[i] == '$') {
                _dollars.push_back({_kept.Size() + i - _done, {}});
            } else if (!_dollars.empty()) {
                _dollars.back().head.Read(_characters[i]);
            }
        }
        _kept.Append(_text, _done, end);
        _done = end;
    }

    /// @return how much text was dropped, rendered.
    std::size_t DropFromLastDollar() {
        const std::size_t position = _dollars.back().position;
        const std::size_t dropped = _kept.RenderedSize(position, _kept.Size());
        _kept.Truncate(position);
        _dollars.pop_back();
        return dropped;
    }

    /// Whether a conditional begins between the last "$" that was kept and the end of the group,
    /// and has at least one character before that end.
    bool HoldsConditional(std::size_t brace, std::size_t groupEnd) {
        if (_dollars.empty()) {
            return false;
        }
        const std::size_t lastHeadEnd = groupEnd - 2;
        // The head may begin in what was kept and end in the group, even across a removal.
        ConditionalHead head = _dollars.back().head;
        for (std::size_t i = brace; i < lastHeadEnd && head.IsOpen(); ++i) {
            head.Read(_characters[i]);
        }
        while (_nextHead < _heads.size() && _heads[_nextHead].begin < brace) {
            ++_nextHead;
        }
        return head.IsComplete() ||
               (_nextHead < _heads.size() && _heads[_nextHead].end <= lastHeadEnd);
    }

    const TemplateText& _text;
    const std::string& _characters;
    const std::vector<Span> _heads;
    const std::vector<std::size_t> _groupEnds;
    std::size_t _done = 0;
    std::size_t _nextHead = 0;
    TemplateText _kept;
    /// The dollar signs in what was kept. Only the last one's head still reads.
    std::vector<Dollar> _dollars;
};

}  // namespace

TemplateText RemoveConditionals(const TemplateText& text) {
    std::vector<Span> heads = FindHeads(text.Characters());
    return heads.empty() ? text : ConditionalRemover(text, std::move(heads)).Run();
}

}  // namespace Corvel::AutoCli
