#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "corvel/metaobj/MetaObject.h"

namespace Corvel::MetaObj {

/// What a structure keeps for the value of one field, in 24 bytes: nothing (the field is absent), a
/// plain integer, boolean or text, or a reference to a shared value. A short text lies in the slot
/// itself, a longer one in a block of exactly its size.
///
/// Threads: no operation that is const changes a slot.
class FieldSlot {
public:
    enum class Kind : std::uint8_t { Absent, Int, Bool, ShortText, LongText, Reference };

    static constexpr std::size_t kMaxShortText = 22;
    /// Moved texts that are larger keep their buffer.
    static constexpr std::size_t kMaxCopiedText = 64;

    FieldSlot() noexcept = default;
    static FieldSlot OfInt(long value) noexcept;
    static FieldSlot OfBool(bool value) noexcept;
    static FieldSlot OfText(std::string_view text);
    /// A text that may be taken. A large one becomes a shared value instead of being copied.
    static FieldSlot OfMovedText(std::string&& text);
    /// The slot of an absent field for an empty reference.
    static FieldSlot OfReference(std::shared_ptr<MetaObject>&& value) noexcept;

    FieldSlot(FieldSlot&& other) noexcept { TakeFrom(other); }
    FieldSlot& operator=(FieldSlot&& other) noexcept {
        // Released last, as the destructor of a value may do a lot.
        const FieldSlot old(std::move(*this));
        TakeFrom(other);
        return *this;
    }
    ~FieldSlot() { Clear(); }

    Kind GetKind() const { return _kind; }
    bool IsAbsent() const { return _kind == Kind::Absent; }
    bool IsReference() const { return _kind == Kind::Reference; }
    /// A value that is kept here and nowhere else.
    bool IsPlain() const { return !IsAbsent() && !IsReference(); }
    /// The type of the value; not for an absent field.
    MetaType Type() const;

    /// What the kind says; none but that may be asked for.
    long Int() const { return Read<long>(); }
    bool Bool() const { return Read<bool>(); }
    /// Of both kinds of text. Lives until the slot changes.
    std::string_view Text() const;
    const std::shared_ptr<MetaObject>& Reference() const {
        return As<std::shared_ptr<MetaObject>>();
    }

    /// @return the value as a shared one: the reference, or a value made as by New of its class.
    std::shared_ptr<MetaObject> MakeReference() const;
    /// Takes the reference out, and leaves the slot of an absent field. An empty reference if there
    /// was none.
    std::shared_ptr<MetaObject> TakeReference() noexcept;

private:
    struct LongText {
        std::unique_ptr<char[]> bytes;
        std::size_t size;
    };

    explicit FieldSlot(Kind kind) noexcept : _kind(kind) {}

    template <typename T>
    T Read() const {
        T value;
        std::memcpy(&value, _storage, sizeof(value));
        return value;
    }
    template <typename T>
    T& As() {
        return *std::launder(reinterpret_cast<T*>(_storage));
    }
    template <typename T>
    const T& As() const {
        return *std::launder(reinterpret_cast<const T*>(_storage));
    }

    void TakeFrom(FieldSlot& other) noexcept;
    void Clear() noexcept {
        if (_kind >= Kind::LongText) {
            Release();
        }
        _kind = Kind::Absent;
    }
    void Release() noexcept;

    alignas(void*) unsigned char _storage[kMaxShortText] = {};
    std::uint8_t _shortSize = 0;
    Kind _kind = Kind::Absent;
};

static_assert(sizeof(FieldSlot) == 24, "a slot is as small as it is said to be");

inline MetaType FieldSlot::Type() const {
    switch (_kind) {
        case Kind::Int:
            return MetaType::Int;
        case Kind::Bool:
            return MetaType::Bool;
        case Kind::Reference:
            return Reference()->GetType();
        default:
            return MetaType::String;
    }
}

inline std::string_view FieldSlot::Text() const {
    if (_kind == Kind::LongText) {
        const auto& text = As<LongText>();
        return {text.bytes.get(), text.size};
    }
    return {reinterpret_cast<const char*>(_storage), _shortSize};
}

inline void FieldSlot::TakeFrom(FieldSlot& other) noexcept {
    if (other._kind == Kind::Reference) {
        new (_storage)
            std::shared_ptr<MetaObject>(std::move(other.As<std::shared_ptr<MetaObject>>()));
    } else if (other._kind == Kind::LongText) {
        new (_storage) LongText(std::move(other.As<LongText>()));
    } else {
        std::memcpy(_storage, other._storage, sizeof(_storage));
        _shortSize = other._shortSize;
    }
    _kind = other._kind;
    other.Clear();
}

}  // namespace Corvel::MetaObj
