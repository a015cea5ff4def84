#pragma once

#include <memory>
#include <string>

#include "corvel/metaobj/MetaObject.h"
#include "corvel/platform/Export.h"

namespace Corvel::MetaObj {

/// A boolean value. There are only two objects of this class, shared by everyone, so no New ever
/// allocates.
class CORVEL_EXPORT MetaBool final : public MetaObject {
public:
    /// @return the shared `false`.
    static std::shared_ptr<MetaBool> New();
    static std::shared_ptr<MetaBool> New(bool value);
    template <typename T>
    static std::shared_ptr<MetaBool> New(T* pointer) = delete;

    MetaBool(FactoryFlag flag, bool value);

    bool GetValue() const;
    /// @return "true" or "false".
    std::string ToString() const override;

    /// Makes the shared objects, unless they exist. @return false where there is no memory
    /// for them; they are made on first use then.
    static bool Init();
    static const bool _sInitialized;

private:
    bool _value;
};

}  // namespace Corvel::MetaObj
