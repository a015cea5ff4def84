#include "corvel/autocli/plugins/XmlNodeTree.h"

#include <array>
#include <string_view>

#include "corvel/autocli/plugins/XmlNodes.h"

namespace Corvel::AutoCli {

std::shared_ptr<const XmlTree> TreeOfNode(xmlNode* node) {
    static const std::array<std::string_view, 10> kAttributes = {SpellingOf(Word::Path),
                                                                 SpellingOf(Word::Name),
                                                                 SpellingOf(Word::Type),
                                                                 SpellingOf(Word::Required),
                                                                 SpellingOf(Word::Secret),
                                                                 SpellingOf(Word::ShortName),
                                                                 SpellingOf(Word::Value),
                                                                 SpellingOf(Word::Min),
                                                                 SpellingOf(Word::Max),
                                                                 SpellingOf(Word::TypeName)};
    XmlTreeBuilder builder;
    ReportNode(node, NodeName(node), kAttributes, builder);
    return builder.Finish();
}

}  // namespace Corvel::AutoCli
