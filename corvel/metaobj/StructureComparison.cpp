#include "corvel/metaobj/StructureComparison.h"

#include <utility>

namespace Corvel::MetaObj {

bool StructureComparison::Compare(const MetaStruct& reference, const MetaObject* candidate) {
    return Finish(BeginStruct(reference, candidate));
}

bool StructureComparison::Compare(const MetaList& reference, const MetaObject* candidate) {
    return Finish(BeginList(reference, candidate));
}

// Each outcome is that of the current field of the innermost pair; the last one is that of all.
bool StructureComparison::Finish(Outcome outcome) {
    while (_pair) {
        if (outcome == Outcome::Pending) {
            outcome = CompareField();
        } else if (outcome == Outcome::Same) {
            ++_pair->field;
            outcome = Outcome::Pending;
        } else {
            Report("Type mismatch on field: " + _pair->fields.Name(_pair->field));
            outcome = Close(false);
        }
    }
    return outcome == Outcome::Same;
}

StructureComparison::Outcome StructureComparison::CompareField() {
    const Pair& pair = *_pair;
    if (pair.field == pair.fields.Count()) {
        return Close(pair.isSameCount);
    }
    const Reference& found = FindCandidate(pair);
    if (found == nullptr) {
        Report("Missing field in input: " + pair.fields.Name(pair.field));
        return Close(false);
    }
    const MetaObject& expected = *pair.fields.Reference(pair.field);
    if (expected.GetType() != found->GetType()) {
        return Outcome::Different;
    }
    return Begin(expected, found);
}

const StructureComparison::Reference& StructureComparison::FindCandidate(const Pair& pair) {
    static const Reference sMissing;
    const MetaStruct& candidate = *pair.candidate;
    if (pair.reference->_layout == candidate._layout) {
        return candidate._values[pair.fields.Slot(pair.field)];
    }
    const std::optional<std::size_t> slot = candidate.FindSlot(pair.fields.Name(pair.field));
    return slot ? candidate._values[*slot] : sMissing;
}

StructureComparison::Outcome StructureComparison::Begin(const MetaObject& reference,
                                                        const Reference& candidate) {
    const ValueView view = View(&reference);
    if (view.kind == ValueKind::Struct) {
        return BeginStruct(*view.structure, candidate.get());
    }
    if (view.kind == ValueKind::List) {
        return BeginList(*view.list, candidate.get());
    }
    return reference.IsSameStructure(candidate, _errors) ? Outcome::Same : Outcome::Different;
}

StructureComparison::Outcome StructureComparison::BeginStruct(const MetaStruct& reference,
                                                              const MetaObject* candidate) {
    if (candidate == nullptr) {
        Report("Invalid NULL input to MetaStruct validation.");
        return Outcome::Same;  // Deliberate: a candidate that is not there passes.
    }
    if (candidate == &reference) {
        return Outcome::Same;
    }
    if (candidate->GetType() != MetaType::Struct) {
        Report("Type Mismatch in MetaStruct Validation: Expected type " +
               MetaTypeString(MetaType::Struct) + " got type " +
               MetaTypeString(candidate->GetType()));
        return Outcome::Different;
    }
    const MetaStruct* structure = View(candidate).structure;
    if (structure == nullptr) {
        Report("Unable to cast to MetaStruct, runtime error?");
        return Outcome::Different;
    }
    Open(reference, *structure, false);
    return Outcome::Pending;
}

StructureComparison::Outcome StructureComparison::BeginList(const MetaList& reference,
                                                            const MetaObject* candidate) {
    if (candidate == nullptr) {
        Report("Mismatch on structure, NULL comparison");
        return Outcome::Different;
    }
    if (candidate->GetType() != MetaType::List) {
        Report("Type mismatch!  Was expecting a " + MetaTypeString(MetaType::List) +
               ", but got a " + MetaTypeString(candidate->GetType()));
        return Outcome::Different;
    }
    const MetaList* list = View(candidate).list;
    if (list == nullptr || list->GetListType() != reference.GetListType()) {
        Report("Mismatch on list type");
        return Outcome::Different;
    }
    const std::shared_ptr<MetaStruct> expected = reference.GetListStructure();
    const std::shared_ptr<MetaStruct> found = list->GetListStructure();
    if (expected == nullptr || found == nullptr || expected == found) {
        return Outcome::Same;
    }
    Open(*expected, *found, true);
    return Outcome::Pending;
}

void StructureComparison::Open(const MetaStruct& reference,
                               const MetaStruct& candidate,
                               bool isListStructure) {
    if (reference._typeName != candidate._typeName &&
        *reference._typeName != *candidate._typeName) {
        Report("Type names do not match.");
    }
    const bool isSameCount = reference._fieldCount == candidate._fieldCount;
    if (!isSameCount) {
        Report("Mismatch on number of fields set in struct. Expected " +
               std::to_string(reference._fieldCount) + " found " +
               std::to_string(candidate._fieldCount));
    }
    if (_pair) {
        _outer.push_back(std::move(*_pair));
    }
    _pair.emplace(
        Pair{StructView(reference), &reference, &candidate, isListStructure, isSameCount});
}

StructureComparison::Outcome StructureComparison::Close(bool isSame) {
    if (!isSame && _pair->isListStructure) {
        Report("List type mismatch list and input");
    }
    _pair.reset();
    if (!_outer.empty()) {
        _pair.emplace(std::move(_outer.back()));
        _outer.pop_back();
    }
    return isSame ? Outcome::Same : Outcome::Different;
}

void StructureComparison::Report(std::string_view message) {
    if (_errors != nullptr) {
        _errors->emplace_back(message);
    }
}

}  // namespace Corvel::MetaObj
