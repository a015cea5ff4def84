#pragma once

#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/ValueView.h"

namespace Corvel::MetaObj {

/// IsSameStructure of structures and lists, however deep they are nested: the stack of the thread
/// does not grow with them. One object serves one comparison.
class StructureComparison {
public:
    /// @param errors  where to append the reasons; may be null.
    explicit StructureComparison(std::list<std::string>* errors) : _errors(errors) {}

    bool Compare(const MetaStruct& reference, const MetaObject* candidate);
    bool Compare(const MetaList& reference, const MetaObject* candidate);

private:
    using Reference = std::shared_ptr<MetaObject>;

    // A pair of structures whose fields are being compared.
    struct Pair {
        StructView fields;
        const MetaStruct* reference;
        const MetaStruct* candidate;
        bool isListStructure;
        bool result;
        std::size_t field = 0;
    };

    // What is begun answers at once, or opens a pair and answers nothing yet.
    std::optional<bool> Begin(const MetaObject& reference, const Reference& candidate);
    std::optional<bool> BeginStruct(const MetaStruct& reference, const MetaObject* candidate);
    std::optional<bool> BeginList(const MetaList& reference, const MetaObject* candidate);
    void Open(const MetaStruct& reference, const MetaStruct& candidate, bool isListStructure);

    bool Finish(std::optional<bool> answer);
    std::optional<bool> CompareField();
    static const Reference& FindCandidate(const Pair& pair);
    bool Close(bool result);
    void Report(const std::string& message);

    std::list<std::string>* _errors;
    std::optional<Pair> _pair;  // the innermost; kept here because most structures are flat
    std::vector<Pair> _outer;   // those around it
};

}  // namespace Corvel::MetaObj
