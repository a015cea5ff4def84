/// Does one case with one size in a process of its own, which the tests measure:
///
///     scale_worker <case> <size>
///
/// Status 0 when all came out as it should, otherwise 1 and a message.

#include <cstddef>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>

#include "tests/scale/Case.h"

namespace {

const Corvel::Scale::Case* Find(std::string_view name) {
    using namespace Corvel::Scale;  // NOLINT(google-build-using-namespace): five names of one kind
    for (const auto& cases : {DeepCases(), WideCases(), FormatCases(), TextCases(), PrintCases()}) {
        for (const Case& each : cases) {
            if (each.name == name) {
                return &each;
            }
        }
    }
    return nullptr;
}

}  // namespace

int main(int argc, char** argv) {
    const Corvel::Scale::Case* const found = argc == 3 ? Find(argv[1]) : nullptr;
    if (found == nullptr) {
        std::cerr << "usage: scale_worker <case> <size>\n";
        return EXIT_FAILURE;
    }
    try {
        found->run(std::stoul(argv[2]));
    } catch (const std::exception& e) {
        std::cerr << found->name << ": " << std::string_view(e.what()).substr(0, 1000) << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
