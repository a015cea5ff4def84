#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
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
    // A pair of structures whose fields are being compared.
    struct Pair {
        StructView fields;
        const MetaStruct* reference;
        const MetaStruct* candidate;
        bool isListStructure;
        bool isSameCount;
        std::size_t field = 0;
    };

    // What is begun has an outcome at once, or opens a pair on which the outcome then depends.
    enum class Outcome { Pending, Same, Different };
    Outcome BeginStruct(const MetaStruct& reference, const MetaObject* candidate);
    Outcome BeginList(const MetaList& reference, const MetaObject* candidate);
    void Open(const MetaStruct& reference, const MetaStruct& candidate, bool isListStructure);

    bool Finish(Outcome outcome);
    Outcome CompareField();
    // The slot of the current field in the candidate.
    static std::size_t FindCandidate(const Pair& pair);
    static bool IsPlainlySame(const MetaStruct& reference, const MetaStruct& candidate);
    Outcome Close(bool isSame);
    void Report(std::string_view message);

    std::list<std::string>* _errors;
    std::optional<Pair> _pair;  // the innermost; kept here because most structures are flat
    std::vector<Pair> _outer;   // those around it
};

}  // namespace Corvel::MetaObj
