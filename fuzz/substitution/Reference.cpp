#include "fuzz/substitution/Reference.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

#include "corvel/corvel.h"

namespace Corvel::Fuzz {

namespace {

/// One character of the template, or one whole value in its place, which nothing looks into.
struct Atom {
    char character = 0;
    std::optional<std::string> value = {};

    bool Is(char expected) const { return !value && character == expected; }
    std::size_t Size() const { return value ? value->size() : 1; }
    std::string Text() const { return value ? *value : std::string(1, character); }
};
using Atoms = std::vector<Atom>;
using Position = std::optional<std::size_t>;

Atoms ToAtoms(std::string_view text) {
    Atoms atoms;
    for (const char c : text) {
        atoms.push_back({c});
    }
    return atoms;
}

std::string ToText(const Atoms& atoms) {
    std::string text;
    for (const Atom& atom : atoms) {
        text += atom.Text();
    }
    return text;
}

void Append(Atoms& atoms, const Atoms& others) {
    atoms.insert(atoms.end(), others.begin(), others.end());
}

Atoms Slice(const Atoms& atoms, std::size_t begin, std::size_t end) {
    return {atoms.begin() + static_cast<std::ptrdiff_t>(begin),
            atoms.begin() + static_cast<std::ptrdiff_t>(end)};
}

/// @return the position behind the text, if it stands there.
Position Match(const Atoms& atoms, Position at, std::string_view text) {
    for (const char c : text) {
        if (!at || *at >= atoms.size() || !atoms[*at].Is(c)) {
            return std::nullopt;
        }
        ++*at;
    }
    return at;
}

/// A token where it stands, with what its groups captured.
struct Found {
    std::size_t begin = 0;
    std::size_t end = 0;
    Atoms captured = {};
    bool isQuoted = false;
};
using Finding = std::optional<Found>;

/// Completes what was found where ",true}" or ",false}" stands at the position.
bool MatchTail(const Atoms& atoms, Position at, Found& found) {
    for (const bool isQuoted : {true, false}) {
        if (const Position end = Match(atoms, at, isQuoted ? ",true}" : ",false}")) {
            found.end = *end;
            found.isQuoted = isQuoted;
            return true;
        }
    }
    return false;
}

// Each matcher looks for its token at one position.

Finding MatchValue(const Atoms& atoms, std::size_t at, const std::string& name) {
    const Position end = Match(atoms, at, "$val{" + name + "}");
    return end ? Finding({at, *end}) : std::nullopt;
}

Finding MatchConditional(const Atoms& atoms, std::size_t at, const std::string& name) {
    const Position text = Match(atoms, at, "$if{" + name + ",");
    if (!text) {
        return std::nullopt;
    }
    for (std::size_t end = *text + 1; end < atoms.size(); ++end) {
        if (atoms[end].Is('}')) {
            return Found{at, end + 1, Slice(atoms, *text, end)};
        }
    }
    return std::nullopt;
}

Finding MatchList(const Atoms& atoms, std::size_t at, const std::string& name) {
    const Position separator = Match(atoms, at, "$list{" + name + ",'");
    if (!separator) {
        return std::nullopt;
    }
    Found found{at};
    if (*separator < atoms.size() && atoms[*separator].Size() <= 1 &&
        MatchTail(atoms, Match(atoms, *separator + 1, "'"), found)) {
        found.captured = {atoms[*separator]};
        return found;
    }
    return MatchTail(atoms, Match(atoms, separator, "'"), found) ? Finding(found) : std::nullopt;
}

Finding MatchMultilist(const Atoms& atoms, std::size_t at, const std::string& name) {
    const Position option = Match(atoms, at, "$multilist{" + name + ",");
    if (!option) {
        return std::nullopt;
    }
    Found found{at};
    for (std::size_t end = *option + 1; end < atoms.size(); ++end) {
        if (MatchTail(atoms, end, found)) {
            found.captured = Slice(atoms, *option, end);
            return found;
        }
    }
    return std::nullopt;
}

using Matcher = Finding (*)(const Atoms&, std::size_t, const std::string&);

/// The one that counts for the whole text: what stands before it is taken as long as possible.
Finding FindLast(const Atoms& atoms, Matcher match, const std::string& name) {
    for (std::size_t at = atoms.size(); at-- > 0;) {
        if (Finding found = match(atoms, at, name)) {
            return found;
        }
    }
    return std::nullopt;
}

template <typename Replacement>
Atoms ReplaceAll(const Atoms& atoms,
                 Matcher match,
                 const std::string& name,
                 Replacement replacement) {
    Atoms replaced;
    for (std::size_t at = 0; at < atoms.size();) {
        if (const Finding found = match(atoms, at, name)) {
            Append(replaced, replacement(*found));
            at = found->end;
        } else {
            replaced.push_back(atoms[at++]);
        }
    }
    return replaced;
}

std::string Escaped(const std::string& text, bool forStdin) {
    std::string escaped;
    for (const char c : text) {
        const bool isBad = std::string_view("\n!\"$&'()*;<>\\^`|").find(c) != std::string::npos;
        escaped.append(isBad && !forStdin ? "\\" : "").append(1, c);
    }
    return escaped;
}

std::string Without(std::string text, char unwanted) {
    text.erase(std::remove(text.begin(), text.end(), unwanted), text.end());
    return text;
}

std::string SingleValue(const GivenParameter& parameter) {
    if (parameter.isFlag) {
        throw CorvelException("Request for GetParameter on a flag type parameter: " +
                              parameter.name);
    }
    if (parameter.isList) {
        throw CorvelException(
            "Request for GetParameter on a parameter that can have multiple values: " +
            parameter.name);
    }
    return parameter.values.size() == 1 ? parameter.values.front() : std::string();
}

Atoms ReplaceValues(const Atoms& atoms, const GivenParameter& parameter, bool forStdin) {
    const Finding last = FindLast(atoms, MatchValue, parameter.name);
    if (!last) {
        return atoms;
    }
    std::string value = SingleValue(parameter);
    const bool standsInQuotes = last->begin > 0 && atoms[last->begin - 1].Is('\'') &&
                                last->end < atoms.size() && atoms[last->end].Is('\'');
    value = !forStdin && standsInQuotes ? Without(value, '\'') : Escaped(value, forStdin);
    return ReplaceAll(atoms, MatchValue, parameter.name, [&](const Found&) {
        return Atoms{{0, value}};
    });
}

Atoms ReplaceConditionals(const Atoms& atoms, const GivenParameter& parameter) {
    return ReplaceAll(
        atoms, MatchConditional, parameter.name, [](const Found& found) { return found.captured; });
}

Atoms ReplaceLists(const Atoms& atoms, const GivenParameter& parameter, bool forStdin) {
    const Finding last = FindLast(atoms, MatchList, parameter.name);
    if (!last) {
        return atoms;
    }
    std::string separator = last->captured.empty() ? "" : last->captured[0].Text();
    if (separator.empty() && forStdin) {
        separator = std::string(1, '\0');
    }
    std::string joined;
    for (const std::string& value : parameter.values) {
        joined += (&value == &parameter.values.front() ? "" : separator) + value;
    }
    joined = Escaped(joined, forStdin);
    const std::string quote = !forStdin && last->isQuoted ? "\"" : "";
    return ReplaceAll(atoms, MatchList, parameter.name, [&](const Found&) {
        return Atoms{{0, quote + joined + quote}};
    });
}

Atoms ReplaceMultilists(const Atoms& atoms, const GivenParameter& parameter, bool forStdin) {
    const Finding last = FindLast(atoms, MatchMultilist, parameter.name);
    if (!last) {
        return atoms;
    }
    Atoms options;
    for (const std::string& value : parameter.values) {
        Append(options, ToAtoms(" "));
        Append(options, last->captured);
        Append(options, ToAtoms(last->isQuoted ? " \"" : " "));
        options.push_back(
            {0, !forStdin && last->isQuoted ? Without(value, '"') : Escaped(value, forStdin)});
        Append(options, ToAtoms(last->isQuoted ? "\"" : ""));
    }
    return ReplaceAll(atoms, MatchMultilist, parameter.name, [&](const Found&) { return options; });
}

/// Whether a conditional of any parameter lies in the text.
bool HoldsConditional(const Atoms& atoms) {
    for (std::size_t at = 0; at < atoms.size(); ++at) {
        const Position name = Match(atoms, at, "$if{");
        Position end = name;
        while (
            end && *end < atoms.size() && !atoms[*end].value &&
            std::string_view("abcdefghijklmnopqrstuvwxyz0123456789-").find(atoms[*end].character) !=
                std::string_view::npos) {
            ++*end;
        }
        const Position text = end == name ? std::nullopt : Match(atoms, end, ",");
        for (std::size_t close = text ? *text + 1 : atoms.size(); close < atoms.size(); ++close) {
            if (atoms[close].Is('}')) {
                return true;
            }
        }
    }
    return false;
}

/// The characters, with something that is none of a token's in the place of each value.
std::string Characters(const Atoms& atoms) {
    std::string characters;
    for (const Atom& atom : atoms) {
        characters += atom.value ? '\1' : atom.character;
    }
    return characters;
}

std::size_t RenderedSize(const Atoms& atoms) {
    return ToText(atoms).size();
}

/// @return the first atom that begins at this place of the rendered text or behind it.
std::size_t AtomAtRendered(const Atoms& atoms, std::size_t place) {
    std::size_t at = 0;
    for (std::size_t rendered = 0; at < atoms.size() && rendered < place; ++at) {
        rendered += atoms[at].Size();
    }
    return at;
}

Atoms RemoveConditionals(Atoms atoms) {
    if (!HoldsConditional(atoms)) {
        return atoms;
    }
    std::string characters = Characters(atoms);
    std::size_t at = 0;
    while (at < atoms.size()) {
        const std::size_t brace = characters.find('{', at);
        if (brace == std::string::npos) {
            break;
        }
        const std::size_t size = PairedSize(characters, brace, '{', '}');
        const std::size_t dollar = characters.rfind('$', brace);
        if (size == 0) {
            at = brace + 1;
        } else if (dollar != std::string::npos &&
                   HoldsConditional(Slice(atoms, dollar, brace + size))) {
            const std::size_t place = RenderedSize(Slice(atoms, 0, brace));
            Atoms shortened = Slice(atoms, 0, dollar);
            Append(shortened, Slice(atoms, brace + size, atoms.size()));
            atoms = std::move(shortened);
            characters = Characters(atoms);
            at = AtomAtRendered(atoms, place);
        } else {
            at = brace + size;
        }
    }
    return atoms;
}

}  // namespace

std::string ExpandTemplate(const std::string& text,
                           const std::vector<GivenParameter>& given,
                           bool forStdin) {
    Atoms atoms = ToAtoms(text);
    for (const GivenParameter& parameter : given) {
        atoms = ReplaceValues(atoms, parameter, forStdin);
        atoms = ReplaceConditionals(atoms, parameter);
        atoms = ReplaceLists(atoms, parameter, forStdin);
        atoms = ReplaceMultilists(atoms, parameter, forStdin);
    }
    return ToText(RemoveConditionals(atoms));
}

std::size_t PairedSize(const std::string& text, std::size_t start, char open, char close) {
    for (std::size_t at = start < text.size() && text[start] == open ? start + 1 : start;
         at < text.size();) {
        if (text[at] == close) {
            return at + 1 - start;
        }
        if (text[at] != open) {
            ++at;
            continue;
        }
        const std::size_t nested = PairedSize(text, at, open, close);
        if (nested == 0) {
            return 0;
        }
        at += nested;
    }
    return 0;
}

}  // namespace Corvel::Fuzz
