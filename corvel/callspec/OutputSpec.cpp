#include "corvel/callspec/OutputSpec.h"

#include <utility>

#include "corvel/callspec/Output.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/MissingDocumentation.h"
#include "corvel/metaobj/NullText.h"

namespace Corvel::CallSpec {

namespace {

void Report(const char* reason, std::list<std::string>* errors) {
    if (errors != nullptr) {
        errors->emplace_back(reason);
    }
}

}  // namespace

const std::string& OutputSpec::_docMissingStaticString = MetaObj::MissingDocumentationAtLoad();

std::shared_ptr<OutputSpec> OutputSpec::New() {
    return std::shared_ptr<OutputSpec>(new OutputSpec());
}

OutputSpec::OutputSpec() = default;

OutputSpec::~OutputSpec() = default;

void OutputSpec::SetRootObject(std::shared_ptr<MetaObj::MetaObject> rootObject) {
    if (!rootObject) {
        throw CorvelException("Root object cannot be set to null");
    }
    _rootObject = std::move(rootObject);
}

void OutputSpec::SetRootObject(std::shared_ptr<MetaObj::MetaBool> rootObject) {
    SetRootObject(std::shared_ptr<MetaObj::MetaObject>(std::move(rootObject)));
}

void OutputSpec::SetRootObject(std::shared_ptr<MetaObj::MetaInt> rootObject) {
    SetRootObject(std::shared_ptr<MetaObj::MetaObject>(std::move(rootObject)));
}

void OutputSpec::SetRootObject(std::shared_ptr<MetaObj::MetaString> rootObject) {
    SetRootObject(std::shared_ptr<MetaObj::MetaObject>(std::move(rootObject)));
}

void OutputSpec::SetRootObject(std::shared_ptr<MetaObj::MetaList> rootObject) {
    SetRootObject(std::shared_ptr<MetaObj::MetaObject>(std::move(rootObject)));
}

void OutputSpec::SetRootObject(std::shared_ptr<MetaObj::MetaStruct> rootObject) {
    SetRootObject(std::shared_ptr<MetaObj::MetaObject>(std::move(rootObject)));
}

void OutputSpec::SetRootObject(std::nullptr_t /*rootObject*/) {
    SetRootObject(std::shared_ptr<MetaObj::MetaObject>());
}

std::shared_ptr<MetaObj::MetaObject> OutputSpec::GetRootObject() const {
    return _rootObject;
}

void OutputSpec::SetDescription(const std::string& description) {
    _description = description;
}

void OutputSpec::SetDescription(const char* description) {
    _description = MetaObj::TextOrEmpty(description);
}

void OutputSpec::SetDescription(std::string&& description) {
    _description = std::move(description);
}

const std::string& OutputSpec::GetDescription() const {
    return _description.empty() ? MetaObj::MissingDocumentation() : _description;
}

bool OutputSpec::Validate(const std::shared_ptr<Output>& output,
                          std::list<std::string>* errors) const {
    if (!_rootObject) {
        Report(
            "No root object set for output spec. Root object for output spec must be set for "
            "proper validation of output.",
            errors);
        return false;
    }
    const std::shared_ptr<MetaObj::MetaObject> result = output->GetRootObject();
    if (!result) {
        Report("No root object set for output. The command did not provide proper output.", errors);
        return false;
    }
    return _rootObject->IsSameStructure(result, errors);
}

}  // namespace Corvel::CallSpec
