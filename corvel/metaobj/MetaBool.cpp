#include "corvel/metaobj/MetaBool.h"

#include <new>

namespace Corvel::MetaObj {

namespace {

struct SharedBools {
    std::shared_ptr<MetaBool> no = std::make_shared<MetaBool>(MetaObject::FactoryFlag{}, false);
    std::shared_ptr<MetaBool> yes = std::make_shared<MetaBool>(MetaObject::FactoryFlag{}, true);
};

// Made on first use, because other libraries may ask before our initialisers have run.
const SharedBools& Shared() {
    static const SharedBools sShared;
    return sShared;
}

}  // namespace

const bool MetaBool::_sInitialized = MetaBool::Init();

// While the library is loaded, nobody could catch what is thrown.
bool MetaBool::Init() {
    try {
        Shared();
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

std::shared_ptr<MetaBool> MetaBool::New() {
    return New(false);
}

std::shared_ptr<MetaBool> MetaBool::New(bool value) {
    return value ? Shared().yes : Shared().no;
}

MetaBool::MetaBool(FactoryFlag flag, bool value)
    : MetaObject(flag, MetaType::Bool), _value(value) {}

bool MetaBool::GetValue() const {
    return _value;
}

std::string MetaBool::ToString() const {
    return _value ? "true" : "false";
}

}  // namespace Corvel::MetaObj
