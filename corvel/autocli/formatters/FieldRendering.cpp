#include "corvel/autocli/formatters/FieldRendering.h"

#include <ostream>
#include <string_view>
#include <utility>

#include "corvel/autocli/formatters/FieldStyle.h"
#include "corvel/autocli/formatters/TextRendering.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/ValueView.h"

namespace Corvel::AutoCli {

using MetaObj::MetaObject;
using MetaObj::MetaStruct;

namespace {

/// Null for anything that is no structure.
std::shared_ptr<MetaStruct> AsStructure(const std::shared_ptr<MetaObject>& value) {
    return std::dynamic_pointer_cast<MetaStruct>(value);
}

}  // namespace

std::string AutoCli_FormatField(const std::string& typeName,
                                const std::string& fieldName,
                                const std::shared_ptr<MetaObject>& value,
                                const FormatParameters& parameters) {
    TextBuffer out;
    FieldStyle(parameters, typeName, fieldName).Append(out, MetaObj::View(value.get()));
    return std::string(out.View());
}

void AutoCli_FitString(const int& indent,
                       const int& width,
                       const std::string& text,
                       bool alreadyIndented,
                       std::ostream& out,
                       bool endLine,
                       char breakChar,
                       bool splitLines) {
    const Fitting fitting{indent, width, alreadyIndented, endLine, breakChar};
    TextBuffer fitted;
    if (splitLines) {
        AppendFittedLines(fitted, text, fitting);
    } else {
        AppendFitted(fitted, text, fitting);
    }
    const std::string_view written = fitted.View();
    out.write(written.data(), static_cast<std::streamsize>(written.size()));
}

std::shared_ptr<MetaObject> GetSubField(const std::shared_ptr<MetaStruct>& structure,
                                        const std::string& path) {
    std::shared_ptr<MetaStruct> current = structure;
    std::shared_ptr<MetaObject> result;
    std::size_t begin = 0;
    for (bool isLast = false; !isLast;) {
        const std::size_t dot = path.find('.', begin);
        isLast = dot == std::string::npos;
        const std::string component = path.substr(begin, dot - begin);
        result = current == nullptr ? nullptr : current->GetField(component);
        if (result != nullptr) {
            current = AsStructure(result);
        }
        begin = dot + 1;
    }
    return result;
}

std::string GetStringField(const std::shared_ptr<MetaStruct>& structure, const std::string& name) {
    return structure == nullptr ? std::string() : std::string(StringField(*structure, name));
}

std::string GetIndent(int level) {
    TextBuffer indent;
    AppendIndent(indent, level);
    return std::string(indent.View());
}

}  // namespace Corvel::AutoCli
