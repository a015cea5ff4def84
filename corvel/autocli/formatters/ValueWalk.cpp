#include "corvel/autocli/formatters/ValueWalk.h"

namespace Corvel::AutoCli {

std::string_view MismatchText(MetaObj::MetaType type, std::string_view unknownType) {
    switch (type) {
        case MetaObj::MetaType::Int:
            return "Error reading a int";
        case MetaObj::MetaType::Bool:
            return "Error reading a bool";
        case MetaObj::MetaType::String:
            return "Error reading a string";
        case MetaObj::MetaType::Struct:
            return "Error reading a struct from output.";
        case MetaObj::MetaType::List:
            return "Error reading a List";
    }
    return unknownType;
}

}  // namespace Corvel::AutoCli
