#pragma once

#include <cstddef>
#include <iosfwd>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "corvel/autocli/formatters/FieldStyle.h"
#include "corvel/autocli/formatters/OutputBuffer.h"
#include "corvel/metaobj/ValueView.h"

namespace Corvel::AutoCli {

class FormatParameters;

/// What the regular expression `.*%(.+)%.*` captures of the whole header: the text between its last
/// percent sign and the last one before that with something in between; empty without a match.
std::string_view FindHeaderTag(std::string_view header);

/// One printing of one value by the simple formatter. Keeps the values that it is inside of on a
/// stack of its own, so that values nested to any depth can be printed.
///
/// Lifetime: refers to the parameters and the stream that it was made with.
class SimpleRendering {
public:
    SimpleRendering(const FormatParameters& parameters, std::ostream& stream);

    void Render(const MetaObj::ValueView& value, int level);

private:
    /// What the parameters say about one structure type.
    struct TypePlan {
        std::string typeName;
        std::optional<std::vector<std::string>> fieldNames;  // all fields when not given
        std::string header;
        std::string headerTag;
        bool hasStyles = false;
        std::map<std::string, FieldStyle> styles;  // made at first use
    };

    struct OpenStruct {
        MetaObj::StructView fields;
        TypePlan& plan;
        std::size_t nameWidth;
        int level;
        std::size_t next = 0;

        std::size_t Count() const;
        const std::string& Name(std::size_t i) const;
        MetaObj::ValueView Value(std::size_t i) const;
    };

    struct OpenList {
        const std::vector<std::shared_ptr<MetaObj::MetaObject>>& items;
        int level;
        std::size_t next = 0;
    };

    void Begin(const MetaObj::ValueView& value, int level);
    void BeginStruct(const MetaObj::MetaStruct& structure, int level);
    void BeginList(const MetaObj::ValueView& value, int level);
    void ReportMismatch(MetaObj::MetaType type);

    /// Goes on to the next nested value; lets go of what is finished.
    void Continue(OpenStruct& open);
    void Continue(OpenList& open);

    TypePlan& PlanOf(const std::string& typeName);
    TypePlan MakePlan(const std::string& typeName) const;
    const FieldStyle& StyleOf(TypePlan& plan, const std::string& fieldName);
    void AppendHeader(const TypePlan& plan, const MetaObj::MetaStruct& structure, int level);

    const FormatParameters& _parameters;
    OutputBuffer _buffer;
    std::string& _out = _buffer.Text();
    const bool _alignsFields;
    const FieldStyle _plain;
    std::map<std::string, TypePlan> _plans;
    TypePlan* _recentPlan = nullptr;
    std::vector<std::variant<OpenStruct, OpenList>> _open;
};

}  // namespace Corvel::AutoCli
