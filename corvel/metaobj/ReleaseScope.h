#pragma once

#include <memory>
#include <vector>

#include "corvel/metaobj/MetaObject.h"

namespace Corvel::MetaObj {

/// How the destructor of a container lets go of the values that it holds. Destructors of nested
/// containers run inside each other, each with a scope of its own; from a certain depth on, values
/// are put aside for the outermost scope, so that the stack of the thread stays small.
class ReleaseScope {
public:
    ReleaseScope() noexcept;
    ReleaseScope(const ReleaseScope&) = delete;
    ReleaseScope& operator=(const ReleaseScope&) = delete;
    ~ReleaseScope();

    void Release(std::shared_ptr<MetaObject> value) noexcept;
    void Release(std::vector<std::shared_ptr<MetaObject>>& values) noexcept;

private:
    std::vector<std::shared_ptr<MetaObject>> _putAside;  // used in the outermost scope only
};

}  // namespace Corvel::MetaObj
