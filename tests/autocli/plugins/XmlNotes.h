#pragma once

#include <string>
#include <string_view>

#include "corvel/autocli/plugins/XmlReader.h"

namespace Corvel::Testing {

/// Writes down what it is handed: "{name a=value,|text}", with a bar where text begins.
class XmlNotes : public AutoCli::XmlHandler {
public:
    void StartElement(std::string_view name, const AutoCli::XmlAttributes& attributes) override;
    void Text(std::string_view text) override;
    void EndElement() override;

    const std::string& Get() const { return _notes; }

private:
    void Note(std::string_view first, std::string_view second);

    std::string _notes;
    bool _inText = false;
};

/// The notes of a text, "refused" for one that is not read.
std::string NotesOfText(const std::string& text);

/// The notes of a file, "refused" for one that is not read.
std::string NotesOfFile(const std::string& path);

}  // namespace Corvel::Testing
