#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "corvel/metaobj/MetaObject.h"

namespace Corvel::Testing {

/// The type and text of a value, "none" for an empty reference.
std::string Describe(const std::shared_ptr<MetaObj::MetaObject>& value);

/// What a whole text is to be read as: the described value or the message raised.
struct XmlOutputCase {
    const char* name;
    std::string input;
    std::string expected;
};

/// What reading a whole text comes to. Nothing may appear on standard error meanwhile.
std::string ReadOutput(const std::string& text);
void ExpectReads(const std::vector<XmlOutputCase>& cases);

/// @return the message with which the one element of a text is refused as a value.
std::string BuildRefusal(std::string_view text);

}  // namespace Corvel::Testing
