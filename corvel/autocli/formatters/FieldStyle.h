#pragma once

#include <optional>
#include <string>

#include "corvel/autocli/formatters/PrintfFormat.h"
#include "corvel/autocli/formatters/TextBuffer.h"
#include "corvel/metaobj/ValueView.h"

namespace Corvel::AutoCli {

class FormatParameters;

/// How one field of one structure type is rendered: what AutoCli_FormatField() looks up, looked up
/// once for any number of values.
///
/// Lifetime: refers to the parameters that it was made from, which must not change meanwhile.
class FieldStyle {
public:
    /// As it is, with neither printf nor units.
    FieldStyle() = default;
    FieldStyle(const FormatParameters& parameters,
               const std::string& typeName,
               const std::string& fieldName);

    /// Whether some field of the type has a style of its own.
    static bool IsAnySet(const FormatParameters& parameters, const std::string& typeName);

    /// Whether the field is rendered as it is.
    bool IsPlain() const { return !_printf && _units == nullptr; }

    void Append(TextBuffer& out, const MetaObj::ValueView& value) const;

private:
    struct Printf {
        PrintfFormat format;
        std::size_t formatSize;
        std::string key;
    };
    static int AppendPrintf(std::string& text,
                            const Printf& printf,
                            const MetaObj::ValueView& value);

    std::optional<Printf> _printf;
    const std::string* _units = nullptr;
};

}  // namespace Corvel::AutoCli
