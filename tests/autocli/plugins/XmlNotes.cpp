#include "tests/autocli/plugins/XmlNotes.h"

namespace Corvel::Testing {

using AutoCli::XmlAttributes;

void XmlNotes::StartElement(std::string_view name, const XmlAttributes& attributes) {
    Note("{", name);
    Note(" ", "");
    for (const auto& attribute : attributes) {
        Note(attribute.name, "=");
        Note(attribute.value, ",");
    }
    _inText = false;
}

void XmlNotes::Text(std::string_view text) {
    Note(_inText ? "" : "|", text);
    _inText = true;
}

void XmlNotes::EndElement() {
    Note("}", "");
    _inText = false;
}

void XmlNotes::Note(std::string_view first, std::string_view second) {
    _notes.append(first).append(second);
}

std::string NotesOfText(const std::string& text) {
    XmlNotes notes;
    return AutoCli::ReadXml(text, notes) ? notes.Get() : "refused";
}

std::string NotesOfFile(const std::string& path) {
    XmlNotes notes;
    return AutoCli::ReadXmlFile(path, notes) ? notes.Get() : "refused";
}

}  // namespace Corvel::Testing
