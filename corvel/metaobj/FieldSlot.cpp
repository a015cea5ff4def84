#include "corvel/metaobj/FieldSlot.h"

#include <utility>

#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaString.h"

namespace Corvel::MetaObj {

FieldSlot FieldSlot::OfInt(long value) noexcept {
    FieldSlot slot(Kind::Int);
    std::memcpy(slot._storage, &value, sizeof(value));
    return slot;
}

FieldSlot FieldSlot::OfBool(bool value) noexcept {
    FieldSlot slot(Kind::Bool);
    std::memcpy(slot._storage, &value, sizeof(value));
    return slot;
}

FieldSlot FieldSlot::OfText(std::string_view text) {
    FieldSlot slot;
    if (text.size() <= kMaxShortText) {
        text.copy(reinterpret_cast<char*>(slot._storage), text.size());
        slot._shortSize = static_cast<std::uint8_t>(text.size());
        slot._kind = Kind::ShortText;
    } else {
        std::unique_ptr<char[]> bytes(new char[text.size()]);  // not filled with zeros first
        text.copy(bytes.get(), text.size());
        new (slot._storage) LongText{std::move(bytes), text.size()};
        slot._kind = Kind::LongText;
    }
    return slot;
}

FieldSlot FieldSlot::OfMovedText(std::string&& text) {
    return text.size() <= kMaxCopiedText ? OfText(text)
                                         : OfReference(MetaString::New(std::move(text)));
}

FieldSlot FieldSlot::OfReference(std::shared_ptr<MetaObject>&& value) noexcept {
    FieldSlot slot;
    if (value != nullptr) {
        new (slot._storage) std::shared_ptr<MetaObject>(std::move(value));
        slot._kind = Kind::Reference;
    }
    return slot;
}

std::shared_ptr<MetaObject> FieldSlot::MakeReference() const {
    switch (_kind) {
        case Kind::Absent:
            break;
        case Kind::Int:
            return MetaInt::New(Int());
        case Kind::Bool:
            return MetaBool::New(Bool());
        case Kind::ShortText:
        case Kind::LongText:
            return MetaString::New(std::string(Text()));
        case Kind::Reference:
            return Reference();
    }
    return nullptr;
}

std::shared_ptr<MetaObject> FieldSlot::TakeReference() noexcept {
    std::shared_ptr<MetaObject> value;
    if (IsReference()) {
        value = std::move(As<std::shared_ptr<MetaObject>>());
        Clear();
    }
    return value;
}

void FieldSlot::Release() noexcept {
    if (_kind == Kind::Reference) {
        std::destroy_at(&As<std::shared_ptr<MetaObject>>());
    } else {
        std::destroy_at(&As<LongText>());
    }
}

}  // namespace Corvel::MetaObj
