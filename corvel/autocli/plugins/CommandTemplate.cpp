#include "corvel/autocli/plugins/CommandTemplate.h"

#include <list>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "corvel/autocli/plugins/ConditionalRemoval.h"
#include "corvel/autocli/plugins/ShellTemplate.h"
#include "corvel/callspec/Input.h"

namespace Corvel::AutoCli {

namespace {

constexpr std::size_t kNowhere = std::string_view::npos;

/// Where a token stands in a text, and what its groups captured: the text of a conditional, the
/// separator or option text of a list, the word for quoting.
struct Token {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t argumentBegin = 0;
    std::size_t argumentEnd = 0;
    bool quote = false;
};

bool HasAt(std::string_view text, std::size_t position, std::string_view expected) {
    return position <= text.size() && text.substr(position, expected.size()) == expected;
}

/// Completes the token when its tail, ",true}" or ",false}", stands at the position.
bool ReadTail(std::string_view text, std::size_t position, Token& token) {
    constexpr std::string_view kQuoted = ",true}";
    constexpr std::string_view kPlain = ",false}";
    token.quote = HasAt(text, position, kQuoted);
    token.end = position + (token.quote ? kQuoted : kPlain).size();
    return token.quote || HasAt(text, position, kPlain);
}

std::optional<Token> FindValueToken(std::string_view text,
                                    std::string_view token,
                                    std::size_t from) {
    const std::size_t begin = text.find(token, from);
    return begin == kNowhere ? std::nullopt : std::optional(Token{begin, begin + token.size()});
}

std::optional<Token> FindConditional(std::string_view text,
                                     std::string_view head,
                                     std::size_t from) {
    const std::size_t begin = text.find(head, from);
    if (begin == kNowhere) {
        return std::nullopt;
    }
    const std::size_t argument = begin + head.size();
    const std::size_t brace = text.find('}', argument + 1);
    return brace == kNowhere ? std::nullopt
                             : std::optional(Token{begin, brace + 1, argument, brace});
}

/// @param head  ends with the quote before the separator.
std::optional<Token> ListTokenAt(const TemplateText& text,
                                 std::string_view head,
                                 std::size_t begin) {
    const std::string_view characters = text.Characters();
    const std::size_t argument = begin + head.size();
    for (const std::size_t end : {argument + 1, argument}) {
        Token token{begin, 0, argument, end};
        if (HasAt(characters, end, "'") && ReadTail(characters, end + 1, token)) {
            const InsertedValue* separator = text.ValueAt(argument);
            return separator != nullptr && separator->Size() > 1 ? std::nullopt
                                                                 : std::optional(token);
        }
    }
    return std::nullopt;
}

std::optional<Token> FindListToken(const TemplateText& text,
                                   std::string_view head,
                                   std::size_t from) {
    const std::string_view characters = text.Characters();
    for (std::size_t begin = characters.find(head, from); begin != kNowhere;
         begin = characters.find(head, begin + 1)) {
        if (const std::optional<Token> token = ListTokenAt(text, head, begin)) {
            return token;
        }
    }
    return std::nullopt;
}

std::optional<Token> FindLastListToken(const TemplateText& text, std::string_view head) {
    const std::string_view characters = text.Characters();
    std::size_t begin = characters.rfind(head);
    while (begin != kNowhere) {
        if (const std::optional<Token> token = ListTokenAt(text, head, begin)) {
            return token;
        }
        begin = begin == 0 ? kNowhere : characters.rfind(head, begin - 1);
    }
    return std::nullopt;
}

std::optional<Token> FindMultilistToken(std::string_view text,
                                        std::string_view head,
                                        std::size_t from) {
    const std::size_t begin = text.find(head, from);
    if (begin == kNowhere) {
        return std::nullopt;
    }
    Token token{begin, 0, begin + head.size()};
    token.argumentEnd = token.argumentBegin;
    do {
        token.argumentEnd = text.find(',', token.argumentEnd + 1);
        if (token.argumentEnd == kNowhere) {
            return std::nullopt;
        }
    } while (!ReadTail(text, token.argumentEnd, token));
    return token;
}

/// The last head that has a tail after it, not the last of the tokens that FindMultilistToken goes
/// through: the option text of one of these may hold another head.
std::optional<Token> FindLastMultilistToken(std::string_view text, std::string_view head) {
    Token ignored;
    std::size_t tail = text.rfind(',');
    while (tail != kNowhere && !ReadTail(text, tail, ignored)) {
        tail = tail == 0 ? kNowhere : text.rfind(',', tail - 1);
    }
    if (tail == kNowhere || tail < head.size() + 1) {
        return std::nullopt;
    }
    const std::size_t begin = text.rfind(head, tail - head.size() - 1);
    return begin == kNowhere ? std::nullopt : FindMultilistToken(text, head, begin);
}

bool StandsInSingleQuotes(std::string_view text, const Token& token) {
    return token.begin > 0 && text[token.begin - 1] == '\'' && HasAt(text, token.end, "'");
}

std::string Escape(const std::string& value, TemplateUse use) {
    return use == TemplateUse::CommandLine ? SanitizeInput(value) : value;
}

std::shared_ptr<const InsertedValue> Inserted(std::string text, const std::string& parameter) {
    auto value = std::make_shared<InsertedValue>();
    value->Append({std::move(text), parameter});
    return value;
}

/// What $list puts between two values. Deliberate: without a separator the values follow each other
/// in a command line, which can hold no NUL, and are parted by NULs on the standard input.
InsertedValue::Piece Separator(const TemplateText& text, const Token& token, TemplateUse use) {
    if (token.argumentBegin != token.argumentEnd) {
        const InsertedValue* value = text.ValueAt(token.argumentBegin);
        if (value == nullptr) {
            return {Escape(std::string(1, text.Characters()[token.argumentBegin]), use), {}};
        }
        for (const InsertedValue::Piece& piece : value->Pieces()) {
            if (!piece.text.empty()) {
                return {Escape(piece.text, use), piece.parameter};
            }
        }
    }
    return {use == TemplateUse::CommandLine ? std::string() : std::string(1, '\0'), {}};
}

/// Asks for the value as the command's own code would. Without a specification, which tells the
/// kind of a parameter, that is what was given.
std::string SingleValue(const std::string& parameter, const CallSpec::Input& input) {
    if (input.GetInputSpec() != nullptr) {
        return input.GetParameter(parameter);
    }
    const std::list<std::string>& values = input.GetParameters().at(parameter);
    return values.size() == 1 ? values.front() : std::string();
}

std::list<std::string> Values(const std::string& parameter, const CallSpec::Input& input) {
    std::list<std::string> values;
    input.GetParameterList(parameter, values);
    return values;
}

}  // namespace

void CommandTemplate::Substitute(const std::string& parameter, const CallSpec::Input& input) {
    SubstituteValue(parameter, input);
    SubstituteConditional(parameter);
    SubstituteList(parameter, input);
    SubstituteMultilist(parameter, input);
}

void CommandTemplate::RemoveConditionals() {
    _text = AutoCli::RemoveConditionals(_text);
}

template <class Find, class Write>
void CommandTemplate::ReplaceAll(Find find, Write write) {
    TemplateText replaced;
    std::size_t done = 0;
    while (const std::optional<Token> token = find(done)) {
        replaced.Append(_text, done, token->begin);
        write(replaced, *token);
        done = token->end;
    }
    if (done > 0) {
        replaced.Append(_text, done, _text.Size());
        _text = std::move(replaced);
    }
}

void CommandTemplate::SubstituteValue(const std::string& parameter, const CallSpec::Input& input) {
    const std::string token = "$val{" + parameter + "}";
    const std::string& characters = _text.Characters();
    const std::size_t last = characters.rfind(token);
    if (last == kNowhere) {
        return;
    }
    const std::string given = SingleValue(parameter, input);
    const bool isQuoted = _use == TemplateUse::CommandLine &&
                          StandsInSingleQuotes(characters, {last, last + token.size()});
    const std::shared_ptr<const InsertedValue> value =
        Inserted(isQuoted ? SanitizeChar(given, '\'') : Escape(given, _use), parameter);
    ReplaceAll([&](std::size_t from) { return FindValueToken(characters, token, from); },
               [&](TemplateText& text, const Token&) { text.Append(value); });
}

void CommandTemplate::SubstituteConditional(const std::string& parameter) {
    const std::string head = "$if{" + parameter + ",";
    ReplaceAll([&](std::size_t from) { return FindConditional(_text.Characters(), head, from); },
               [&](TemplateText& text, const Token& token) {
                   text.Append(_text, token.argumentBegin, token.argumentEnd);
               });
}

void CommandTemplate::SubstituteList(const std::string& parameter, const CallSpec::Input& input) {
    const std::string head = "$list{" + parameter + ",'";
    const std::optional<Token> last = FindLastListToken(_text, head);
    if (!last) {
        return;
    }
    const InsertedValue::Piece separator = Separator(_text, *last, _use);
    const auto joined = std::make_shared<InsertedValue>();
    for (const std::string& value : Values(parameter, input)) {
        if (!joined->Pieces().empty()) {
            joined->Append(separator);
        }
        joined->Append({Escape(value, _use), parameter});
    }
    const std::string_view quote = last->quote && _use == TemplateUse::CommandLine ? "\"" : "";
    ReplaceAll([&](std::size_t from) { return FindListToken(_text, head, from); },
               [&](TemplateText& text, const Token&) {
                   text.Append(quote);
                   text.Append(joined);
                   text.Append(quote);
               });
}

void CommandTemplate::SubstituteMultilist(const std::string& parameter,
                                          const CallSpec::Input& input) {
    const std::string head = "$multilist{" + parameter + ",";
    const std::optional<Token> last = FindLastMultilistToken(_text.Characters(), head);
    if (!last) {
        return;
    }
    const std::string_view quote = last->quote ? "\"" : "";
    TemplateText options;
    for (const std::string& value : Values(parameter, input)) {
        const bool isStripped = last->quote && _use == TemplateUse::CommandLine;
        options.Append(" ");
        options.Append(_text, last->argumentBegin, last->argumentEnd);
        options.Append(" ");
        options.Append(quote);
        options.Append(
            Inserted(isStripped ? SanitizeChar(value, '"') : Escape(value, _use), parameter));
        options.Append(quote);
    }
    ReplaceAll([&](std::size_t from) { return FindMultilistToken(_text.Characters(), head, from); },
               [&](TemplateText& text, const Token&) { text.Append(options, 0, options.Size()); });
}

}  // namespace Corvel::AutoCli
