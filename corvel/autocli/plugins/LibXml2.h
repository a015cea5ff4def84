#pragma once

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

namespace Corvel::Platform {
class SharedLibrary;
}

namespace Corvel::AutoCli {

/// libxml2, mapped into the process when the first XML is met: most invocations read none, and with
/// it comes a library of Unicode tables that takes longer to load than all the rest of us.
///
/// A host that has libxml2 of its own shares it with us, with its settings.
///
/// Lifetime: it is never given back, because it keeps data for each thread.
class LibXml2 final {
    // Before the functions, which are found in it.
    const Platform::SharedLibrary& _library;

    template <typename Symbol>
    Symbol Find(const char* name) const;

public:
    /// Raises "Unable to load libxml2: " + the system loader's words, and std::bad_alloc where it had
    /// too little memory to set itself up; asked again, tries again.
    static const LibXml2& Get();

    LibXml2(const LibXml2&) = delete;
    LibXml2& operator=(const LibXml2&) = delete;

// A function of libxml2, by its own name.
// NOLINTNEXTLINE(bugprone-macro-parentheses): what is declared cannot stand in parentheses
#define CORVEL_LIBXML2_FUNCTION(name) decltype(&::name) name = Find<decltype(&::name)>(#name)
    CORVEL_LIBXML2_FUNCTION(inputPush);
    CORVEL_LIBXML2_FUNCTION(xmlCheckVersion);
    CORVEL_LIBXML2_FUNCTION(xmlCtxtReadMemory);
    CORVEL_LIBXML2_FUNCTION(xmlCtxtUseOptions);
    CORVEL_LIBXML2_FUNCTION(xmlDictQLookup);
    CORVEL_LIBXML2_FUNCTION(xmlFreeDoc);
    CORVEL_LIBXML2_FUNCTION(xmlFreeNodeList);
    CORVEL_LIBXML2_FUNCTION(xmlFreeParserCtxt);
    CORVEL_LIBXML2_FUNCTION(xmlGetDtdElementDesc);
    CORVEL_LIBXML2_FUNCTION(xmlGetProp);
    CORVEL_LIBXML2_FUNCTION(xmlHasProp);
    CORVEL_LIBXML2_FUNCTION(xmlNewInputStream);
    CORVEL_LIBXML2_FUNCTION(xmlNewParserCtxt);
    CORVEL_LIBXML2_FUNCTION(xmlNodeGetContent);
    CORVEL_LIBXML2_FUNCTION(xmlNodeListGetString);
    CORVEL_LIBXML2_FUNCTION(xmlParseDocument);
    CORVEL_LIBXML2_FUNCTION(xmlSetStructuredErrorFunc);
    CORVEL_LIBXML2_FUNCTION(xmlStopParser);
    CORVEL_LIBXML2_FUNCTION(xmlStringLenGetNodeList);
#undef CORVEL_LIBXML2_FUNCTION

    /// Gives back memory that it handed over.
    void Free(void* memory) const {
        (*_free)(memory);
    }
    /// Where the errors of this thread go.
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
    explicit LibXml2(const Platform::SharedLibrary& library);

    // Variables, or functions that tell where one is.
    xmlFreeFunc* _free = Find<xmlFreeFunc*>("xmlFree");
    decltype(&::__xmlStructuredError) _errorFunction =
        Find<decltype(&::__xmlStructuredError)>("__xmlStructuredError");
    decltype(&::__xmlStructuredErrorContext) _errorContext =
        Find<decltype(&::__xmlStructuredErrorContext)>("__xmlStructuredErrorContext");
    int _version;
};

}  // namespace Corvel::AutoCli
