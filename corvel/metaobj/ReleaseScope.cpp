#include "corvel/metaobj/ReleaseScope.h"

#include <iterator>
#include <new>
#include <utility>

namespace Corvel::MetaObj {

namespace {

using Values = std::vector<std::shared_ptr<MetaObject>>;

constexpr int kMaxDepth = 64;

// Of plain types, because values may die after the other variables of a thread.
thread_local int tDepth = 0;
thread_local Values* tPutAside = nullptr;

}  // namespace

ReleaseScope::ReleaseScope() noexcept {
    if (++tDepth == 1) {
        tPutAside = &_putAside;
    }
}

ReleaseScope::~ReleaseScope() {
    if (tDepth == 1) {
        while (!_putAside.empty()) {
            Values batch = std::move(_putAside);
            _putAside.clear();
            batch.clear();
        }
        tPutAside = nullptr;
    }
    --tDepth;
}

void ReleaseScope::Release(std::shared_ptr<MetaObject> value) noexcept {
    if (tDepth > kMaxDepth && value != nullptr) {
        try {
            tPutAside->push_back(std::move(value));
        } catch (const std::bad_alloc&) {
            // Without memory the value goes the nested way, which needs none.
        }
    }
}

void ReleaseScope::Release(Values& values) noexcept {
    if (tDepth > kMaxDepth) {
        try {
            tPutAside->insert(tPutAside->end(),
                              std::make_move_iterator(values.begin()),
                              std::make_move_iterator(values.end()));
        } catch (const std::bad_alloc&) {
            // Without memory the values go the nested way, which needs none.
        }
    }
    values.clear();
}

}  // namespace Corvel::MetaObj
