#include "corvel/metaobj/StructureComparison.h"

#include <utility>

#include "corvel/metaobj/FieldLayout.h"
#include "corvel/metaobj/FieldSlot.h"

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
    const std::size_t found = FindCandidate(pair);
    if (found == StructView::kNoSlot) {
        Report("Missing field in input: " + pair.fields.Name(pair.field));
        return Close(false);
    }
    const ValueView expected = pair.fields.Value(pair.field);
    const FieldSlot& candidate = pair.candidate->_slots[found];
    if (expected.type != candidate.Type()) {
        return Outcome::Different;
    }
    switch (expected.kind) {
        case ValueKind::Struct:
            return BeginStruct(*expected.structure, candidate.Reference().get());
        case ValueKind::List:
            return BeginList(*expected.list, candidate.Reference().get());
        case ValueKind::Mismatch:
            return expected.object->IsSameStructure(pair.candidate->ReferenceAt(found), _errors)
                       ? Outcome::Same
                       : Outcome::Different;
        default:
            return Outcome::Same;
    }
}

std::size_t StructureComparison::FindCandidate(const Pair& pair) {
    const MetaStruct& candidate = *pair.candidate;
    if (pair.reference->_layout == candidate._layout) {
        const std::size_t slot = pair.fields.Slot(pair.field);
        return candidate.HasValue(slot) ? slot : StructView::kNoSlot;
    }
    return candidate.FindSlot(pair.fields.Name(pair.field));
}

// Whether it is seen at a glance: one layout, and plain values of equal types.
bool StructureComparison::IsPlainlySame(const MetaStruct& reference, const MetaStruct& candidate) {
    if (reference._layout != candidate._layout || reference._fieldCount != candidate._fieldCount) {
        return false;
    }
    for (std::size_t slot = 0; slot < reference._slots.size(); ++slot) {
        const FieldSlot& expected = reference._slots[slot];
        if (expected.IsAbsent()) {
            continue;
        }
        if (!expected.IsPlain() || !candidate.HasValue(slot)) {
            return false;
        }
        const FieldSlot& found = candidate._slots[slot];
        if (!found.IsPlain() || found.Type() != expected.Type()) {
            return false;
        }
    }
    return true;
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
    if (IsPlainlySame(reference, *structure)) {
        return Outcome::Same;
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
    if (reference._layout != candidate._layout &&
        reference.GetTypeName() != candidate.GetTypeName()) {
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
