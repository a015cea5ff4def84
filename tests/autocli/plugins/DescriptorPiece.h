#pragma once

#include <string>

#include <gtest/gtest.h>
#include <libxml/tree.h>

#include "tests/autocli/plugins/ParsedXml.h"

namespace Corvel::Testing {

/// A piece of a descriptor, parsed.
class DescriptorPiece {
public:
    explicit DescriptorPiece(const std::string& text) : _parsed(text) {
        EXPECT_TRUE(_parsed.IsParsed()) << text;
    }

    xmlNode* Node() const { return _parsed.Root(); }

private:
    ParsedXml _parsed;
};

/// A piece of a descriptor, and the whole text with which it is refused.
struct Refusal {
    std::string element;
    std::string message;
};

/// What stands between the pieces of elements that are to be passed over.
inline const std::string kOtherNodes =
    " text <!-- comment --><![CDATA[<enum/>]]><?regex <range/>?>\n";

}  // namespace Corvel::Testing
