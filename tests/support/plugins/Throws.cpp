#include <exception>
#include <memory>
#include <stdexcept>

#include "corvel/autocli/Namespace.h"
#include "corvel/metaobj/CorvelException.h"

namespace {

/// A type that only this library knows: its code is gone when the library is.
class [[maybe_unused]] OwnError : public std::exception {
public:
    const char* what() const noexcept override { return "of my own"; }
};

}  // namespace

/// Registers a namespace, then fails with what the build says.
extern "C" __attribute__((visibility("default"))) void AutoCli_RegisterNamespaces(
    // NOLINTNEXTLINE(performance-unnecessary-value-param): the signature of every entry point
    std::shared_ptr<Corvel::AutoCli::Namespace> root) {
    root->SubNamespace("halfway");
    throw THROWN;
}
