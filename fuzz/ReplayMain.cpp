// Runs a fuzz target on every file of the folders given, and on the empty input.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "fuzz/FuzzTarget.h"

namespace {

void Replay(const std::string& input) {
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

}  // namespace

int main(int argc, char** argv) {
    std::size_t replayed = 0;
    Replay({});
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            std::cout << entry.path().string() << std::endl;
            Replay({std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()});
            ++replayed;
        }
    }
    std::cout << replayed << " inputs replayed\n";
    return replayed > 0 ? 0 : 1;
}
