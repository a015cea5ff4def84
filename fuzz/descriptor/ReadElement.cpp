#include "fuzz/descriptor/ReadElement.h"

#include "corvel/corvel.h"

namespace Corvel::Fuzz {

xmlNode* OnlyChild(const xmlNode* node, const std::string& tag) {
    const std::vector<xmlNode*> found = Elements(node, tag);
    if (found.size() > 1) {
        throw CorvelException("More than one instance of " + tag + " found, expected only one.");
    }
    return found.empty() ? nullptr : found[0];
}

std::string OnlyText(const xmlNode* node, const std::string& tag) {
    const std::vector<xmlNode*> found = Elements(node, tag);
    if (found.size() > 1) {
        throw CorvelException("Illegal Duplicate tags found.  The tag " + tag +
                              " was expected only once, but was found multiple times.");
    }
    return found.empty() ? "" : Content(found[0]);
}

Entries ReadEntries(const xmlNode* node,
                    const std::string& tag,
                    const std::string& attribute,
                    const std::string& purpose) {
    Entries entries;
    for (const xmlNode* child : Elements(node)) {
        if (Name(child) != tag) {
            throw CorvelException("Found unexpected tag while building " + purpose +
                                  ".  Unexpected tag was: " + Name(child));
        }
        const std::string value = Attribute(child, attribute);
        if (value.empty()) {
            throw CorvelException("Error parsing '" + tag + "', missing required attribute '" +
                                  attribute + "'");
        }
        entries.emplace_back(value, Content(child));
    }
    return entries;
}

}  // namespace Corvel::Fuzz
