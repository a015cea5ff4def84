#pragma once

#include <memory>
#include <optional>
#include <string>

#include "corvel/corvel.h"

namespace Corvel::Fuzz {

/// A value as the C library's snprintf renders it with a user's format, once the format is known to
/// have nothing in it that could go wrong.
/// @return nothing when a number in the format is so large that snprintf would take its time.
std::optional<std::string> FormatWithLibrary(const std::shared_ptr<MetaObj::MetaObject>& value,
                                             const std::string& format,
                                             const std::string& key);

/// How a text is to be fitted, with the names that AutoCli_FitString() has for it.
struct Fitting {
    int indent = 0;
    int width = 0;
    bool alreadyIndented = false;
    bool endLine = false;
    char breakChar = 0;
    bool splitLines = false;
};

std::string Fit(const std::string& text, const Fitting& fitting);

/// The value that a dotted path leads to.
std::shared_ptr<MetaObj::MetaObject> FollowPath(
    const std::shared_ptr<MetaObj::MetaStruct>& structure,
    const std::string& path);

}  // namespace Corvel::Fuzz
