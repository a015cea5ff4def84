#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <string>

#include "corvel/metaobj/MetaObject.h"
#include "corvel/platform/Export.h"

namespace Corvel::MetaObj {
class MetaBool;
class MetaInt;
class MetaList;
class MetaString;
class MetaStruct;
}  // namespace Corvel::MetaObj

namespace Corvel::CallSpec {

/// The result of one call: the value that the command returned, and the messages about what went
/// wrong, in the order in which they came. A call has failed when there is a message.
///
/// Ownership: shares the value.
class CORVEL_EXPORT Output {
public:
    /// What the value is, and so how it is printed.
    enum OutputType : std::uint32_t {
        Normal = 0,    ///< the result of a command
        Reserved = 1,  ///< not used
        Help = 2,      ///< the help of a command
    };

    /// An output without messages and value, of the type Normal.
    static std::shared_ptr<Output> New();

    /// For derived classes, which like every output are made straight into a shared reference.
    Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    virtual ~Output();

    /// An empty reference, or nullptr, is allowed: there is no value then.
    void SetRootObject(std::shared_ptr<MetaObj::MetaObject> rootObject);
    void SetRootObject(std::shared_ptr<MetaObj::MetaBool> rootObject);
    void SetRootObject(std::shared_ptr<MetaObj::MetaInt> rootObject);
    void SetRootObject(std::shared_ptr<MetaObj::MetaString> rootObject);
    void SetRootObject(std::shared_ptr<MetaObj::MetaList> rootObject);
    void SetRootObject(std::shared_ptr<MetaObj::MetaStruct> rootObject);
    void SetRootObject(std::nullptr_t rootObject);
    /// @return an empty reference when there is none.
    std::shared_ptr<MetaObj::MetaObject> GetRootObject() const;

    /// Null counts as empty text, which is a message too.
    void AddErrorMessage(const std::string& message);
    void AddErrorMessage(const char* message);
    void AddErrorMessage(std::string&& message);
    bool HasError() const;
    const std::list<std::string>& GetErrors() const;

    void SetOutputType(OutputType outputType);
    OutputType GetOutputType() const;

private:
    std::list<std::string> _errors;
    std::shared_ptr<MetaObj::MetaObject> _rootObject;
    OutputType _outputType = Normal;
};

}  // namespace Corvel::CallSpec
