#pragma once

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace Corvel::CallSpec {
class Output;
}
namespace Corvel::MetaObj {
class MetaList;
}

/// The values that all benchmarks measure with, the product's and the yardsticks' alike.
namespace Corvel::Bench {

/// How many structures the figures of the documents are measured with.
constexpr std::size_t kStructures = 100'000;
/// Every structure has one field for each member of Row.
constexpr std::size_t kFields = 8;

/// The plain data of one structure, in the order of the field names.
struct Row {
    long blocks = 0;
    std::string device;
    std::string fileSystem;
    std::string identifier;
    std::string mountPoint;
    bool removable = false;
    long sectorSize = 0;
    long serial = 0;
};

/// Always the same rows for the same count. Texts are ASCII; one in 50 mount points needs escaping.
std::vector<Row> MakeRows(std::size_t count);

/// The rows as a list of structures that were made from one definition.
std::shared_ptr<MetaObj::MetaList> MakeList(const std::vector<Row>& rows);

/// The result of a command that returned MakeList(MakeRows(count)).
std::shared_ptr<CallSpec::Output> MakeOutput(std::size_t count);

/// The rows as a value document, as an extension command prints it: about 470 bytes a row.
std::string MakeDocument(const std::vector<Row>& rows);

}  // namespace Corvel::Bench
