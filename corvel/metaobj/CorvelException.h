#pragma once

#include <exception>
#include <string>

#include "corvel/platform/Export.h"

namespace Corvel {

/// The one exception that the library raises: a programming or declaration error, told in one
/// complete English sentence. There are no error codes.
///
/// Ownership: keeps its own copy of the message; what() points into it and lives as long as it.
class CORVEL_EXPORT CorvelException : public std::exception {
public:
    /// Null counts as empty text.
    explicit CorvelException(const char* message);
    explicit CorvelException(const std::string& message);
    CorvelException(const CorvelException&) = default;
    CorvelException& operator=(const CorvelException&) = default;
    ~CorvelException() override;

    const char* what() const noexcept override;

private:
    std::string _message;
};

}  // namespace Corvel
