#include "corvel/callspec/Output.h"

#include <utility>

#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/NullText.h"

namespace Corvel::CallSpec {

std::shared_ptr<Output> Output::New() {
    return std::make_shared<Output>();
}

Output::Output() = default;

Output::~Output() = default;

void Output::SetRootObject(std::shared_ptr<MetaObj::MetaObject> rootObject) {
    _rootObject = std::move(rootObject);
}

void Output::SetRootObject(std::shared_ptr<MetaObj::MetaBool> rootObject) {
    SetRootObject(std::shared_ptr<MetaObj::MetaObject>(std::move(rootObject)));
}

void Output::SetRootObject(std::shared_ptr<MetaObj::MetaInt> rootObject) {
    SetRootObject(std::shared_ptr<MetaObj::MetaObject>(std::move(rootObject)));
}

void Output::SetRootObject(std::shared_ptr<MetaObj::MetaString> rootObject) {
    SetRootObject(std::shared_ptr<MetaObj::MetaObject>(std::move(rootObject)));
}

void Output::SetRootObject(std::shared_ptr<MetaObj::MetaList> rootObject) {
    SetRootObject(std::shared_ptr<MetaObj::MetaObject>(std::move(rootObject)));
}

void Output::SetRootObject(std::shared_ptr<MetaObj::MetaStruct> rootObject) {
    SetRootObject(std::shared_ptr<MetaObj::MetaObject>(std::move(rootObject)));
}

void Output::SetRootObject(std::nullptr_t /*rootObject*/) {
    SetRootObject(std::shared_ptr<MetaObj::MetaObject>());
}

std::shared_ptr<MetaObj::MetaObject> Output::GetRootObject() const {
    return _rootObject;
}

void Output::AddErrorMessage(std::string&& message) {
    _errors.push_back(std::move(message));
}

void Output::AddErrorMessage(const std::string& message) {
    _errors.push_back(message);
}

void Output::AddErrorMessage(const char* message) {
    _errors.emplace_back(MetaObj::TextOrEmpty(message));
}

bool Output::HasError() const {
    return !_errors.empty();
}

const std::list<std::string>& Output::GetErrors() const {
    return _errors;
}

void Output::SetOutputType(OutputType outputType) {
    _outputType = outputType;
}

Output::OutputType Output::GetOutputType() const {
    return _outputType;
}

}  // namespace Corvel::CallSpec
