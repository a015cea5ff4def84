#pragma once

#include <string>

namespace Corvel::Testing {

/// The smallest elements that a descriptor and each of its commands must have.
inline const std::string kVersion = "<version>1.0.0</version>";
inline const std::string kInput = "<input-spec/>";
inline const std::string kOutput = "<output-spec><string/></output-spec>";
inline const std::string kFormat = "<format-parameters/>";
inline const std::string kExecute = "<execute>true</execute>";

inline std::string NamespaceElement(const std::string& path, const std::string& description) {
    return "<namespace path=\"" + path + "\"><description>" + description +
           "</description></namespace>";
}

inline std::string CommandElement(const std::string& path,
                                  const std::string& content = kInput + kOutput + kFormat +
                                                               kExecute) {
    return "<command path=\"" + path + "\">" + content + "</command>";
}

inline std::string Namespaces(const std::string& content) {
    return "<namespaces>" + content + "</namespaces>";
}

inline std::string Commands(const std::string& content) {
    return "<commands>" + content + "</commands>";
}

/// The whole text of a descriptor.
inline std::string Descriptor(const std::string& content) {
    return "<?xml version=\"1.0\"?>\n<plugin>" + content + "</plugin>\n";
}

}  // namespace Corvel::Testing
