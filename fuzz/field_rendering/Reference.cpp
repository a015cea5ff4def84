#include "fuzz/field_rendering/Reference.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <boost/regex.hpp>

namespace Corvel::Fuzz {

using MetaObj::MetaObject;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

namespace {

/// More than any buffer of a small format and a small text.
constexpr unsigned long kLargest = 5'000;

/// Literal text, and at most one conversion.
const boost::regex kFormat(
    "(?:[^%]|%%)*"
    "(?:%[-+ #0']*(\\d*)(?:\\.(\\d*))?(?:(hh|h|ll|l|q|L|j|z|t)?([diouxX])|(s)))?"
    "(?:[^%]|%%)*");

struct Format {
    std::string text;  // up to its first NUL
    boost::smatch groups;

    bool HasConversion() const { return groups[4].matched || groups[5].matched; }
    bool HasHugeNumber() const { return Number(1) > kLargest || Number(2) > kLargest; }
    unsigned long Number(int group) const {
        return groups[group].length() == 0 ? 0
                                           : std::strtoul(groups[group].str().c_str(), nullptr, 10);
    }
};

template <typename Argument>
std::string Print(const std::string& format, Argument argument) {
    const int size = std::max(std::snprintf(nullptr, 0, format.c_str(), argument), 0);
    std::vector<char> buffer(static_cast<std::size_t>(size) + 1);
    std::snprintf(buffer.data(), buffer.size(), format.c_str(), argument);
    return buffer.data();
}

std::string PrintNumber(const Format& format, long value) {
    const std::string length = format.groups[3].str();
    if (length.empty() || length == "h" || length == "hh") {
        return Print(format.text, static_cast<int>(value));
    }
    return Print(format.text, value);
}

std::string Failure(const std::string& key, int error) {
    return "Error while handling formatting parameter " + key +
           ".  Unable to format field: " + std::strerror(error);
}

long ToLong(const MetaObject& value) {
    return value.GetType() == MetaType::Bool ? (value.ToString() == "true" ? 1 : 0)
                                             : std::atol(value.ToString().c_str());
}

std::vector<std::string> SplitAt(const std::string& text, char separator) {
    std::vector<std::string> pieces;
    std::string piece;
    for (const char c : text) {
        if (c == separator) {
            pieces.push_back(piece);
            piece.clear();
        } else {
            piece += c;
        }
    }
    if (!piece.empty()) {
        pieces.push_back(piece);
    }
    return pieces;
}

std::string FitWords(const std::string& line, const Fitting& fitting, const std::string& indent) {
    const long room = static_cast<long>(fitting.width) - fitting.indent;
    const std::string lineEnd(1, fitting.breakChar == 0 ? ' ' : fitting.breakChar);
    std::string fitted;
    long left = room;
    bool isFirst = true;
    for (const std::string& word : SplitAt(line, ' ')) {
        const long size = static_cast<long>(word.size()) + 1;
        left -= size;
        if (left < 0) {
            fitted += lineEnd + "\n" + indent + word;
            left = room - size;
        } else {
            fitted += (isFirst ? "" : " ") + word;
        }
        isFirst = false;
    }
    return fitted;
}

std::string FitLine(const std::string& line, const Fitting& fitting) {
    const std::string indent(static_cast<std::size_t>(std::max(fitting.indent, 1)), ' ');
    const bool mustWrap = fitting.width > fitting.indent &&
                          static_cast<long>(line.size()) > fitting.width - fitting.indent;
    return (fitting.alreadyIndented ? "" : indent) +
           (mustWrap ? FitWords(line, fitting, indent) : line) + (fitting.endLine ? "\n" : "");
}

}  // namespace

std::optional<std::string> FormatWithLibrary(const std::shared_ptr<MetaObject>& value,
                                             const std::string& format,
                                             const std::string& key) {
    if (value->GetType() == MetaType::Struct || value->GetType() == MetaType::List) {
        return "";
    }
    Format parsed;
    parsed.text = format.c_str();
    if (!boost::regex_match(parsed.text, parsed.groups, kFormat)) {
        // Which of two faults is told, when a number is too large besides, is left open.
        static const boost::regex kHugeNumber(".*\\d{10}.*");
        const bool mayOverflow = boost::regex_match(parsed.text, kHugeNumber);
        return mayOverflow ? std::nullopt : std::optional(Failure(key, EINVAL));
    }
    if (parsed.HasHugeNumber()) {
        return std::nullopt;
    }
    const bool isText = value->GetType() == MetaType::String;
    if (parsed.HasConversion() && parsed.groups[5].matched != isText) {
        return Failure(key, EINVAL);
    }
    const std::string text = value->ToString();
    const std::string printed =
        isText ? Print(parsed.text, text.c_str()) : PrintNumber(parsed, ToLong(*value));
    return printed.substr(0, format.size() + text.size() + 64);
}

std::string Fit(const std::string& text, const Fitting& fitting) {
    if (!fitting.splitLines) {
        return FitLine(text, fitting);
    }
    std::string fitted;
    Fitting ofLine = fitting;
    bool isFirst = true;
    for (const std::string& line : SplitAt(text, '\n')) {
        fitted += isFirst || fitting.endLine ? "" : "\n";
        fitted += FitLine(line, ofLine);
        ofLine.alreadyIndented = false;
        isFirst = false;
    }
    return fitted;
}

std::shared_ptr<MetaObject> FollowPath(const std::shared_ptr<MetaStruct>& structure,
                                       const std::string& path) {
    if (path.find('.') == std::string::npos) {
        return structure->GetField(path);
    }
    std::shared_ptr<MetaStruct> current = structure;
    std::shared_ptr<MetaObject> result;
    for (const std::string& name : SplitAt(path + ".", '.')) {
        if (current == nullptr) {
            return nullptr;
        }
        result = current->GetField(name);
        if (result != nullptr) {
            current = std::dynamic_pointer_cast<MetaStruct>(result);
        }
    }
    return result;
}

}  // namespace Corvel::Fuzz
