#include "tests/autocli/plugins/SubstitutionReference.h"

#include <list>
#include <map>
#include <vector>

#include <boost/regex.hpp>

#include "corvel/autocli/plugins/ShellTemplate.h"
#include "corvel/callspec/Input.h"
#include "corvel/metaobj/CorvelException.h"

namespace Corvel::Testing {

namespace {

using AutoCli::SanitizeChar;
using AutoCli::SanitizeInput;
using CallSpec::Input;

/// Expands templates with the expressions themselves, over characters wide enough to let one of
/// them stand for a whole inserted value.
class Reference {
public:
    Reference(const std::string& text, const Call& call, bool forStdin, InsertedValue inserted)
        : _text(Widen(text)), _input(*call.input), _forStdin(forStdin), _inserted(inserted) {}

    std::string Expand() {
        if (_text.find(L'$') == std::wstring::npos) {
            return Rendered(_text);
        }
        for (const auto& [name, type] : kParameters) {
            if (_input.HasParameter(name)) {
                const std::wstring wide = Widen(name);
                ReplaceValue(name, wide);
                ReplaceConditional(wide);
                ReplaceList(name, wide);
                ReplaceMultilist(name, wide);
            }
        }
        RemoveConditionals();
        return Rendered(_text);
    }

    /// Whether no inserted value held a character that has a meaning in a template.
    bool IsHarmless() const { return _isHarmless; }

private:
    // A separator is one character, so a value that is longer must not pass for one.
    static constexpr wchar_t kFirstShortValue = 0x10000;
    static constexpr wchar_t kFirstLongValue = 0x20000;

    static std::wstring Widen(const std::string& text) {
        std::wstring wide;
        for (const char c : text) {
            wide += static_cast<wchar_t>(static_cast<unsigned char>(c));
        }
        return wide;
    }

    std::string Rendered(const std::wstring& wide) const {
        std::string text;
        for (const wchar_t c : wide) {
            text += TextOf(c);
        }
        return text;
    }

    std::string TextOf(wchar_t c) const {
        return c < kFirstShortValue ? std::string(1, static_cast<char>(c))
                                    : _values.at(static_cast<std::size_t>(c) % kFirstShortValue);
    }

    std::wstring Inserted(const std::string& value) {
        if (_inserted == InsertedValue::Bytes) {
            // A separator of the template may have come into the value.
            _isHarmless = _isHarmless && value.find_first_of("${}'") == std::string::npos;
            return Widen(value);
        }
        _values.push_back(value);
        const wchar_t first = value.size() > 1 ? kFirstLongValue : kFirstShortValue;
        return {static_cast<wchar_t>(first + static_cast<wchar_t>(_values.size() - 1))};
    }

    std::string Sanitized(const std::string& value) const {
        return _forStdin ? value : SanitizeInput(value);
    }

    static const boost::wregex& Expression(const std::wstring& pattern) {
        static std::map<std::wstring, boost::wregex> expressions;
        return expressions.try_emplace(pattern, pattern).first->second;
    }

    bool Matches(boost::wsmatch& match, const std::wstring& pattern) const {
        return boost::regex_match(_text, match, Expression(pattern));
    }

    void ReplaceLiterally(const std::wstring& pattern, const std::wstring& replacement) {
        _text = boost::regex_replace(
            _text, Expression(pattern), replacement, boost::regex_constants::format_literal);
    }

    void ReplaceValue(const std::string& name, const std::wstring& wide) {
        const std::wstring token = L"\\$val\\{" + wide + L"\\}";
        boost::wsmatch match;
        if (!Matches(match, L"(.*)" + token + L"(.*)")) {
            return;
        }
        const std::wstring before = match[1];
        const std::wstring after = match[2];
        const std::string value = _input.GetParameter(name);
        const bool isQuoted =
            !before.empty() && before.back() == L'\'' && !after.empty() && after.front() == L'\'';
        ReplaceLiterally(
            token, Inserted(isQuoted && !_forStdin ? SanitizeChar(value, '\'') : Sanitized(value)));
    }

    void ReplaceConditional(const std::wstring& wide) {
        const std::wstring token = L"\\$if\\{" + wide + L",(.+?)\\}";
        boost::wsmatch match;
        if (Matches(match, L".*" + token + L".*")) {
            _text = boost::regex_replace(_text, Expression(token), std::wstring(L"$1"));
        }
    }

    void ReplaceList(const std::string& name, const std::wstring& wide) {
        const std::wstring separatorGroup = L"([^\\x{20000}-\\x{2ffff}]?)";
        const std::wstring token =
            L"\\$list\\{" + wide + L",'" + separatorGroup + L"',(true|false)\\}";
        boost::wsmatch match;
        if (!Matches(match, L".*" + token + L".*")) {
            return;
        }
        std::string separator;
        for (const wchar_t c : std::wstring(match[1])) {
            separator = TextOf(c);
        }
        std::string joined;
        if (separator.empty() && !_forStdin) {
            std::list<std::string> values;
            _input.GetParameterList(name, values);
            for (const std::string& value : values) {
                joined += value;
            }
        } else {
            joined =
                _input.GetParameterListAsString(name, separator.empty() ? '\0' : separator.front());
        }
        const std::wstring quote = match[2] == L"true" && !_forStdin ? L"\"" : L"";
        ReplaceLiterally(token, quote + Inserted(Sanitized(joined)) + quote);
    }

    void ReplaceMultilist(const std::string& name, const std::wstring& wide) {
        const std::wstring token = L"\\$multilist\\{" + wide + L",(.+?),(true|false)\\}";
        boost::wsmatch match;
        if (!Matches(match, L".*" + token + L".*")) {
            return;
        }
        const std::wstring option = match[1];
        const std::wstring quote = match[2] == L"true" ? L"\"" : L"";
        std::list<std::string> values;
        _input.GetParameterList(name, values);
        std::wstring options;
        for (const std::string& value : values) {
            const bool isStripped = !quote.empty() && !_forStdin;
            options.append(L" ").append(option).append(L" ").append(quote);
            options.append(Inserted(isStripped ? SanitizeChar(value, '"') : Sanitized(value)));
            options.append(quote);
        }
        ReplaceLiterally(token, options);
    }

    void RemoveConditionals() {
        const boost::wregex& conditional = Expression(L".*\\$if\\{[a-z0-9-]+,.+?\\}.*");
        if (!boost::regex_match(_text, conditional)) {
            return;
        }
        std::size_t position = 0;
        while ((position = _text.find(L'{', position)) != std::wstring::npos) {
            const std::size_t size = GroupSize(position);
            const std::size_t dollar = _text.rfind(L'$', position);
            const std::size_t length = position + size - dollar;
            if (size == 0) {
                ++position;
            } else if (dollar != std::wstring::npos &&
                       boost::regex_match(_text.substr(dollar, length), conditional)) {
                const std::size_t bytesBefore = Rendered(_text.substr(0, position)).size();
                _text.erase(dollar, length);
                position = dollar;
                while (position < _text.size() &&
                       Rendered(_text.substr(0, position)).size() < bytesBefore) {
                    ++position;
                }
            } else {
                position += size;
            }
        }
    }

    std::size_t GroupSize(std::size_t start) const {
        std::size_t depth = 0;
        for (std::size_t i = start; i < _text.size(); ++i) {
            depth += _text[i] == L'{' ? 1U : 0U;
            depth -= _text[i] == L'}' ? 1U : 0U;
            if (depth == 0) {
                return i + 1 - start;
            }
        }
        return 0;
    }

    std::wstring _text;
    const Input& _input;
    const bool _forStdin;
    const InsertedValue _inserted;
    bool _isHarmless = true;
    std::vector<std::string> _values;
};

}  // namespace

ReferenceExpansion ExpandByExpressions(const std::string& text,
                                       const Call& call,
                                       bool forStdin,
                                       InsertedValue inserted) {
    Reference reference(text, call, forStdin, inserted);
    std::string expanded;
    try {
        expanded = reference.Expand();
    } catch (const CorvelException& e) {
        expanded = std::string("raised: ") + e.what();
    }
    return {expanded, reference.IsHarmless()};
}

}  // namespace Corvel::Testing
