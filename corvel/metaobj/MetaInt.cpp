#include "corvel/metaobj/MetaInt.h"

#include <array>
#include <cstddef>
#include <new>

namespace Corvel::MetaObj {

namespace {

constexpr long kFirstShared = -1;
constexpr long kLastShared = 20;

using SharedInts = std::array<std::shared_ptr<MetaInt>, kLastShared - kFirstShared + 1>;

SharedInts MakeShared() {
    SharedInts made;
    for (long value = kFirstShared; value <= kLastShared; ++value) {
        made[static_cast<std::size_t>(value - kFirstShared)] =
            std::make_shared<MetaInt>(MetaObject::FactoryFlag{}, value);
    }
    return made;
}

// Made on first use, because other libraries may ask before our initialisers have run.
const SharedInts& Shared() {
    static const SharedInts sShared = MakeShared();
    return sShared;
}

}  // namespace

const bool MetaInt::_sInitialized = MetaInt::Init();

// While the library is loaded, nobody could catch what is thrown.
bool MetaInt::Init() {
    try {
        Shared();
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

std::shared_ptr<MetaInt> MetaInt::New() {
    return New(0);
}

std::shared_ptr<MetaInt> MetaInt::New(long value) {
    if (value >= kFirstShared && value <= kLastShared) {
        return Shared()[static_cast<std::size_t>(value - kFirstShared)];
    }
    return std::make_shared<MetaInt>(FactoryFlag{}, value);
}

MetaInt::MetaInt(FactoryFlag flag, long value) : MetaObject(flag, MetaType::Int), _value(value) {}

long MetaInt::GetValue() const {
    return _value;
}

std::string MetaInt::ToString() const {
    return std::to_string(_value);
}

}  // namespace Corvel::MetaObj
