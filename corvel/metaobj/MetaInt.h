#pragma once

#include <memory>
#include <string>

#include "corvel/metaobj/MetaObject.h"
#include "corvel/platform/Export.h"

namespace Corvel::MetaObj {

/// A signed 64-bit integer value. The values -1 to 20 are shared objects that exist once.
class CORVEL_EXPORT MetaInt final : public MetaObject {
public:
    /// @return the shared 0.
    static std::shared_ptr<MetaInt> New();
    static std::shared_ptr<MetaInt> New(long value);

    MetaInt(FactoryFlag flag, long value);

    long GetValue() const;
    /// @return the decimal digits, after "-" for a negative value.
    std::string ToString() const override;

    /// Makes the shared objects, unless they exist. @return false where there is no memory
    /// for them; they are made on first use then.
    static bool Init();
    static const bool _sInitialized;

private:
    long _value;
};

}  // namespace Corvel::MetaObj
