#pragma once

#include <memory>
#include <string>

#include "corvel/metaobj/MetaObject.h"
#include "corvel/platform/Export.h"

namespace Corvel::MetaObj {

/// A text value: bytes, which ought to be UTF-8. New makes one shared object of every empty text.
class CORVEL_EXPORT MetaString final : public MetaObject {
public:
    /// @return the shared empty text.
    static std::shared_ptr<MetaString> New();
    /// Null counts as empty text.
    static std::shared_ptr<MetaString> New(const char* text);
    static std::shared_ptr<MetaString> New(const std::string& text);
    static std::shared_ptr<MetaString> New(std::string&& text);
    /// Consumes a text of doubtful origin. Where it is no well-formed UTF-8 (up to its first NUL),
    /// it is replaced by its escaped form, each stray byte written as \xHH, and the caller finds
    /// that form in `text`.
    static std::shared_ptr<MetaString> NewUtf8WithEscapes(std::string&& text);
    /// The same of a copy of the text. Null counts as empty text.
    static std::shared_ptr<MetaString> NewUtf8WithEscapes(const char* text);

    MetaString(FactoryFlag flag, std::string&& text);

    const std::string& GetValue() const;
    /// @return the text itself, neither quoted nor escaped.
    std::string ToString() const override;

    /// Makes the shared object, unless it exists. @return false where there is no memory
    /// for it; it is made on first use then.
    static bool Init();
    static const bool _sInitialized;

private:
    std::string _value;
};

}  // namespace Corvel::MetaObj
