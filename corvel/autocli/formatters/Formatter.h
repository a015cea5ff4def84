#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "corvel/autocli/formatters/DisplayContext.h"
#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/callspec/Output.h"
#include "corvel/platform/Export.h"

namespace Corvel::AutoCli {

/// One parameter that a formatter understands, as shown to the user.
struct FormatterParam {
    std::string name;
    std::string description;
    bool flag = false;
};

/// Turns the result of a command into text: the base of all formatters, those of plug-ins included.
///
/// A derived constructor passes the name to the base, then sets the description and appends the
/// parameters that its formatter understands.
///
/// Ownership: held by shared reference, by its plug-in.
/// Failures:  each formatter's own; see its header.
/// Lifetime:  may format any number of outputs; keeps nothing from one to the next.
class CORVEL_EXPORT Formatter {
public:
    /// A formatter without a name cannot be registered, only called.
    Formatter();
    /// @param name  what the user calls the formatter by.
    explicit Formatter(const char* name);
    explicit Formatter(const std::string& name);
    explicit Formatter(std::string&& name);
    Formatter(const Formatter&) = delete;
    Formatter& operator=(const Formatter&) = delete;

    virtual ~Formatter();

    /// Writes the whole rendering of the output's root object to the stream. Neither the flags, the
    /// width, the fill nor the locale of the stream changes the text, nor are they changed.
    ///
    /// @param output      to the formatters of this library, null is an output whose root is null.
    /// @param parameters  read only.
    /// @param display     the screen to write for; read only.
    /// @return whether the rendering was completed.
    virtual bool Format(const std::shared_ptr<CallSpec::Output>& output,
                        FormatParameters& parameters,
                        DisplayContext& display,
                        std::ostream& stream) = 0;

    const std::string& GetName() const;
    const std::string& GetDescription() const;
    /// In order of declaration.
    const std::vector<FormatterParam>& GetParams() const;

protected:
    void SetDescription(std::string description);
    /// Makes room for that many parameters.
    void ReserveParams(std::size_t count);
    void AddParam(std::string name, std::string description, bool flag = false);

private:
    std::string _description;
    std::vector<FormatterParam> _params;
    std::string _name;
};

}  // namespace Corvel::AutoCli
