#include "corvel/metaobj/MetaString.h"

#include <cstdlib>
#include <new>
#include <utility>

#include "corvel/metaobj/NullText.h"
#include "corvel/platform/Platform.h"

namespace Corvel::MetaObj {

namespace {

constexpr long kUpToNul = -1;

struct FreeText {
    void operator()(char* text) const { std::free(text); }
};

// Made on first use, because other libraries may ask before our initialisers have run.
const std::shared_ptr<MetaString>& SharedEmpty() {
    static const std::shared_ptr<MetaString> sEmpty =
        std::make_shared<MetaString>(MetaObject::FactoryFlag{}, std::string());
    return sEmpty;
}

}  // namespace

const bool MetaString::_sInitialized = MetaString::Init();

// While the library is loaded, nobody could catch what is thrown.
bool MetaString::Init() {
    try {
        SharedEmpty();
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

std::shared_ptr<MetaString> MetaString::New() {
    return SharedEmpty();
}

std::shared_ptr<MetaString> MetaString::New(const char* text) {
    return New(std::string(TextOrEmpty(text)));
}

std::shared_ptr<MetaString> MetaString::New(const std::string& text) {
    return New(std::string(text));
}

std::shared_ptr<MetaString> MetaString::New(std::string&& text) {
    return text.empty() ? SharedEmpty()
                        : std::make_shared<MetaString>(FactoryFlag{}, std::move(text));
}

std::shared_ptr<MetaString> MetaString::NewUtf8WithEscapes(std::string&& text) {
    if (text.empty()) {
        return SharedEmpty();
    }
    if (Unicode_IsBufferValid(text.c_str(), kUpToNul, kUnicodeEncodingUtf8)) {
        return std::make_shared<MetaString>(FactoryFlag{}, std::move(text));
    }
    const std::unique_ptr<char, FreeText> escaped(
        Unicode_EscapeBuffer(text.c_str(), kUpToNul, kUnicodeEncodingUtf8));
    text = TextOrEmpty(escaped.get());
    // Copied, because the caller finds the escaped form in `text`. No shared object stands for it,
    // not even when it has become empty.
    return std::make_shared<MetaString>(FactoryFlag{}, std::string(text));
}

std::shared_ptr<MetaString> MetaString::NewUtf8WithEscapes(const char* text) {
    return NewUtf8WithEscapes(std::string(TextOrEmpty(text)));
}

MetaString::MetaString(FactoryFlag flag, std::string&& text)
    : MetaObject(flag, MetaType::String), _value(std::move(text)) {}

const std::string& MetaString::GetValue() const {
    return _value;
}

std::string MetaString::ToString() const {
    return _value;
}

}  // namespace Corvel::MetaObj
