#include "tests/guard/Alphabet.h"

namespace Corvel::Testing {

const std::vector<std::string>& Alphabet() {
    static const std::vector<std::string> symbols = {
        "\n",
        "!",
        "\"",
        "$",
        "&",
        "'",
        "(",
        ")",
        "*",
        ";",
        "<",
        ">",
        "\\",
        "^",
        "`",
        "|",
        " ",
        "\t",
        "#",
        "?",
        "~",
        "[",
        "]",
        "{",
        "}",
        "=",
        "-",
        "a",
        "1",
        "/",
        ":",
        ",",
        ".",
        "%",
        "+",
        "@",
        "\r",
        "\x01",
        "\x0b",
        "\x7f",
        "\x80",
        "\xff",
        // White space: U+0085, U+00A0, U+1680, U+2003, U+2028, U+202F, U+205F, U+3000.
        "\xc2\x85",
        "\xc2\xa0",
        "\xe1\x9a\x80",
        "\xe2\x80\x83",
        "\xe2\x80\xa8",
        "\xe2\x80\xaf",
        "\xe2\x81\x9f",
        "\xe3\x80\x80"};
    return symbols;
}

}  // namespace Corvel::Testing
