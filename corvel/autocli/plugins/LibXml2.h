#pragma once

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

// The functions of libxml2 that the library calls.
#define CORVEL_LIBXML2_FUNCTIONS(apply)                                                            \
    apply(xmlCheckVersion) apply(xmlCtxtReadMemory) apply(xmlCtxtUseOptions) apply(xmlDictQLookup) \
        apply(xmlFreeDoc) apply(xmlFreeNodeList) apply(xmlFreeParserCtxt)                          \
            apply(xmlGetDtdElementDesc) apply(xmlGetProp) apply(xmlHasProp)                        \
                apply(xmlNewInputStream) apply(xmlNewParserCtxt) apply(xmlNodeGetContent)          \
                    apply(xmlNodeListGetString) apply(xmlParseDocument)                            \
                        apply(xmlSetStructuredErrorFunc) apply(xmlStopParser)                      \
                            apply(xmlStringLenGetNodeList) apply(inputPush)

namespace Corvel::AutoCli {

/// libxml2, mapped into the process when the first XML is met: most invocations read none, and with
/// it comes a library of Unicode tables that takes longer to load than all the rest of us.
///
/// The members are the functions of those names. A host that has libxml2 of its own shares it with
/// us, with its settings.
///
/// Lifetime: it is never given back, because it keeps data for each thread.
class LibXml2 final {
public:
    /// Raises "Unable to load libxml2: " + the system loader's words; asked again, tries again.
    static const LibXml2& Get();

    LibXml2(const LibXml2&) = delete;
    LibXml2& operator=(const LibXml2&) = delete;

#define CORVEL_LIBXML2_MEMBER(name) decltype(&::name) name;
    CORVEL_LIBXML2_FUNCTIONS(CORVEL_LIBXML2_MEMBER)
#undef CORVEL_LIBXML2_MEMBER

    /// What is a variable in libxml2: who frees its memory, and where the errors of this thread go.
    void Free(void* memory) const {
        (*_free)(memory);
    }
    xmlStructuredErrorFunc GetErrorFunction() const {
        return *_errorFunction();
    }
    void* GetErrorContext() const {
        return *_errorContext();
    }

    /// The version of the library that runs, which need not be that of the headers: 20914 is 2.9.14.
    int GetVersion() const {
        return _version;
    }

private:
    LibXml2();

    xmlFreeFunc* _free;
    decltype(&::__xmlStructuredError) _errorFunction;
    decltype(&::__xmlStructuredErrorContext) _errorContext;
    int _version;
};

}  // namespace Corvel::AutoCli
