#pragma once

#include <list>
#include <string>
#include <vector>

namespace Corvel::Fuzz {

/// A parameter that the call was given.
struct GivenParameter {
    std::string name;
    std::list<std::string> values;
    bool isList = false;
    bool isFlag = false;
};

/// What a command template is to become: the rules one after the other, each over the whole text, as
/// slow as that is and without any cleverness.
///
/// @param given  in the declared order.
/// @throws CorvelException  as asking for the value of a list or a flag does.
std::string ExpandTemplate(const std::string& text,
                           const std::vector<GivenParameter>& given,
                           bool forStdin);

/// The size of the group that begins at `start`, with its braces; 0 when it does not end.
std::size_t PairedSize(const std::string& text, std::size_t start, char open, char close);

}  // namespace Corvel::Fuzz
