#include <cstdio>
#include <string>

#include "tests/scale/Case.h"

namespace Corvel::Scale {

namespace {

void Print(const std::string& text) {
    Require(std::fwrite(text.data(), 1, text.size(), stdout) == text.size(), "room on the output");
}

std::string IntField(const std::string& name, std::size_t value) {
    return "<field name=\"" + name + "\"><int>" + std::to_string(value) + "</int></field>";
}

std::string TextField(const std::string& name, const std::string& value) {
    return "<field name=\"" + name + "\"><string>" + value + "</string></field>";
}

/// About 490 bytes a structure.
void PrintValues(std::size_t count) {
    Print("<?xml version=\"1.0\"?>\n<output>\n<list type=\"structure\">\n");
    for (std::size_t i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        Print("<structure typeName=\"Disk\">" + IntField("Blocks", i * 7919 % 1'000'007) +
              TextField("Device", "/dev/nvme" + number + "n1") + TextField("FileSystem", "ext4") +
              TextField("Identifier", "b3f1c2d4-0000-4000-8000-" + number) +
              TextField("MountPoint", "/srv/a &amp; b " + number) +
              "<field name=\"Removable\"><bool>true</bool></field>" + IntField("SectorSize", 512) +
              IntField("Serial", i * 104'729) + "</structure>\n");
    }
    Print("</list>\n</output>\n");
}

void PrintLines(const std::string& line, std::size_t bytes) {
    for (std::size_t printed = 0; printed < bytes; printed += line.size()) {
        Print(line);
    }
}

void PrintText(std::size_t bytes) {
    PrintLines("This is no XML, but a text of sixty-four bytes a line, all same\n", bytes);
}

void PrintErrors(std::size_t bytes) {
    PrintLines("ERROR:disk /dev/nvme0n1 is busy, as it was on every line before\n", bytes);
}

void PrintErrorLine(std::size_t bytes) {
    Print("ERROR:");
    Print(std::string(bytes, 'e'));
    Print("\n");
}

void PrintString(std::size_t bytes) {
    Print("<output><string>");
    PrintLines("one string of sixty-four bytes a line, and then of the same text", bytes);
    Print("</string></output>\n");
}

/// A reference in each line makes the parser put the text together.
void PrintPieces(std::size_t bytes) {
    Print("<output><string>");
    std::string line(63, 'x');
    line += "&lt;";
    for (std::size_t printed = 0; printed < bytes; printed += 64) {
        Print(line);
    }
    Print("</string></output>\n");
}

/// Text before which nothing but a long line stands: all structures on one.
void PrintOneLine(std::size_t count) {
    Print("<output><list type=\"structure\">");
    for (std::size_t i = 0; i < count; ++i) {
        Print("<structure typeName=\"S\">" + IntField("n", i) + "</structure>");
    }
    Print("</list></output>");
}

/// Structures within structures: the output element and two elements a level, and the int.
void PrintNested(std::size_t depth) {
    Print("<output>");
    for (std::size_t i = 0; i < depth; ++i) {
        Print("<structure typeName=\"S\"><field name=\"x\">");
    }
    Print("<int>1</int>");
    for (std::size_t i = 0; i < depth; ++i) {
        Print("</field></structure>");
    }
    Print("</output>");
}

void PrintFields(std::size_t count) {
    Print("<output><structure typeName=\"S\">");
    for (std::size_t i = count; i > 0; --i) {
        Print(IntField("field" + std::to_string(i), i));
    }
    Print("</structure></output>");
}

}  // namespace

std::span<const Case> PrintCases() {
    static constexpr Case kCases[] = {
        {"print-values", PrintValues},
        {"print-text", PrintText},
        {"print-errors", PrintErrors},
        {"print-error-line", PrintErrorLine},
        {"print-string", PrintString},
        {"print-pieces", PrintPieces},
        {"print-one-line", PrintOneLine},
        {"print-nested", PrintNested},
        {"print-fields", PrintFields},
    };
    return kCases;
}

}  // namespace Corvel::Scale
