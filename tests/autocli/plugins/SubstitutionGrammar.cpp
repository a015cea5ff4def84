#include "tests/autocli/plugins/SubstitutionGrammar.h"

namespace Corvel::Testing {

using CallSpec::ParameterType;

std::string SubstitutionGrammar::Template(int depth) {
    std::string text;
    for (int count = Below(6); count >= 0; --count) {
        text += depth > 0 && Below(3) == 0 ? Nested(depth - 1) : Fragment();
    }
    return text;
}

Values SubstitutionGrammar::SomeValues(const std::function<std::string()>& makeValue) {
    Values values;
    for (const auto& [name, type] : kParameters) {
        if (Below(3) == 0) {
            continue;
        }
        const bool isList = type == ParameterType::StringList;
        for (int count = isList ? Below(3) : 0; count >= 0; --count) {
            values[name].push_back(makeValue());
        }
    }
    return values;
}

std::string SubstitutionGrammar::Word(const std::string& alphabet, int shortest) {
    std::string word;
    for (int count = shortest + Below(4 - shortest); count > 0; --count) {
        word += alphabet[static_cast<std::size_t>(Below(static_cast<int>(alphabet.size())))];
    }
    return word;
}

std::string SubstitutionGrammar::Nested(int depth) {
    switch (Below(6)) {
        case 0:
            return "$multilist{" + Name() + "," + Template(depth) + "," + Flag() + "}";
        case 1:
            return "$list{" + Name() + ",'" + Template(depth) + "'," + Flag() + "}";
        case 2:
            return "{" + Template(depth) + "}";
        default:
            return "$if{" + Name() + "," + Template(depth) + "}";
    }
}

std::string SubstitutionGrammar::Fragment() {
    static const std::vector<std::string> parts = {
        "$",  "{",     "}",         "'",       ",",        "\"",         " ",  "x",      "1",
        "-",  "$if{",  "$i",        "f{",      "$val{",    "$list{",     ",",  ",true}", ",false}",
        "',", "zz,",   "$if{zz,",   "${HOME}", "\n",       "\1",         "\\", "$1",     "$&",
        "''", "$if{}", "$if{zz,x}", "true}",   "$val{zz}", "$multilist{"};
    switch (Below(8)) {
        case 0:
            return "$val{" + SingleName() + "}";
        case 1:
            return "'$val{" + SingleName() + "}'";
        case 2:
            return "$list{" + Name() + ",'" + Word(",; '", 1).substr(0, 1) + "'," + Flag() + "}";
        case 3:
            return "$list{" + Name() + ",'$val{" + SingleName() + "}'," + Flag() + "}";
        case 4:
            return Name();
        default:
            return AnyOf(parts);
    }
}

const std::string& SubstitutionGrammar::Name() {
    static const std::vector<std::string> names = {"bb", "cc", "dd", "ee", "ff", "gg", "zz"};
    return AnyOf(names);
}

const std::string& SubstitutionGrammar::SingleName() {
    static const std::vector<std::string> names = {"bb", "dd", "gg", "zz"};
    return Below(20) == 0 ? Name() : AnyOf(names);
}

const std::string& SubstitutionGrammar::AnyOf(const std::vector<std::string>& words) {
    return words[static_cast<std::size_t>(Below(static_cast<int>(words.size())))];
}

}  // namespace Corvel::Testing
