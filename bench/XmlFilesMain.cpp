// Reads each file of a folder into a document tree and frees it, and does nothing with it: the
// yardstick for loading descriptors.
#include <cstdlib>
#include <filesystem>

#include <libxml/parser.h>

int main(int argc, char** argv) {
    if (argc != 2) {
        return EXIT_FAILURE;
    }
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        xmlDoc* document = xmlReadFile(entry.path().c_str(), nullptr, 0);
        if (document == nullptr) {
            return EXIT_FAILURE;
        }
        xmlFreeDoc(document);
    }
    return EXIT_SUCCESS;
}
