#include "tests/guard/AttackGrammar.h"

#include "tests/guard/Alphabet.h"

namespace Corvel::Testing {

namespace {

/// Pieces of what could make a shell run `id` or `zz`, or leave the place that it is put in.
const std::vector<std::string>& ValueParts() {
    static const std::vector<std::string> parts = {
        ";id",
        "; id;#",
        "\nid\n",
        "|id",
        "|id;#",
        "&id",
        "&&id&&",
        "||id",
        "&id&",
        "$(id)",
        "`id`",
        "\"$(id)\"",
        "'$(id)'",
        "'",
        "\"",
        "\\",
        "\\\\",
        "\\'",
        "\\\"",
        "$",
        "`",
        "#",
        " #",
        "\n",
        "\\\n",
        "\r\n",
        "(",
        ")",
        "{",
        "}",
        "id",
        " id ",
        "zz",
        " zz",
        ";zz",
        "$(zz)",
        "`zz`",
        "${x:=id}",
        "${x:-$(id)}",
        "$((id))",
        "a[$(id)]",
        "a[`id`]=1",
        "$'\\nid\\n'",
        "$\"",
        "$[",
        "E\nid\n",
        "\nE\nid\n",
        "E",
        "F",
        "EOF",
        ";;",
        ";; esac; id;",
        ") id;;",
        "esac",
        "esac;id",
        "in",
        "do",
        "done;id",
        "fi;id",
        "then",
        "}",
        "};id;{",
        "if",
        "!",
        "eval",
        "eval id",
        "-c",
        "-c id",
        "sh -c id",
        "-e",
        "--",
        "2",
        "2>&1",
        ">x",
        "<x",
        ">&2",
        "<(id)",
        ">(id)",
        "<<E",
        "<<<id",
        "=",
        "x=id",
        "PATH=.",
        "PATH=. id",
        "IFS=i",
        "~",
        "~root",
        "*",
        "?",
        "[a]",
        "{id,}",
        "{a..b}",
        "%",
        "^id^",
        "!!",
        "!id",
        "\t",
        " ",
        "\x0b",
        "\x0c",
        "\r",
        "\x01",
        "\x7f",
        "\x80",
        "\x81",
        "\x82",
        "\x83",
        "\x84",
        "\x85",
        "\x86",
        "\x87",
        "\x88",
        "\xa0",
        "\xff",
        "\xc2\xa0",
        "\xe2\x80\xa8",
        "\xe3\x80\x80",
        "()",
        "() { id; }",
        "id()",
        "{ id; }",
        "(id)",
        "((id))",
        "[[ id",
        "function id",
        "coproc id",
        "time id",
        "command id",
        "exec id",
        ". id",
        "trap id 0",
        "$val{bb}",
        "$if{aa,id}",
        "s/a/id/e",
        "\";system(\"id\");\"",
        "\"}BEGIN{system(\"id\")}{\"",
        "/bin/id",
        "a",
        "1",
        "",
        "x",
    };
    return parts;
}

/// Commands that read some of their words as arithmetic or as names of variables, in some shells.
const std::vector<std::string>& Builtins() {
    static const std::vector<std::string> builtins = {"command test a -eq",
                                                      "declare -a",
                                                      "export",
                                                      "getopts a",
                                                      "local -i",
                                                      "printf",
                                                      "read -r",
                                                      "shift",
                                                      "test",
                                                      "typeset",
                                                      "ulimit -c",
                                                      "unset -v",
                                                      "wait"};
    return builtins;
}

/// Variables that are arithmetic to some shells, or that these evaluate.
const std::vector<std::string>& Variables() {
    static const std::vector<std::string> variables = {
        "COLUMNS", "HISTCMD", "OPTIND", "PS4", "RANDOM", "SECONDS", "TMOUT"};
    return variables;
}

}  // namespace

std::string AttackGrammar::Template() {
    static const std::vector<std::string> separators = {"; ", "\n", " && ", " || ", " | ", " & "};
    std::string text = Command(2);
    for (std::size_t count = Below(3); count > 0; --count) {
        text += OneOf(separators) + Command(2);
    }
    return text;
}

std::string AttackGrammar::Command(int depth) {
    std::string words;
    for (std::size_t count = 1 + Below(3); count > 0; --count) {
        words += " " + Word(depth);
    }
    switch (Below(20)) {
        case 0:
            return "if :" + words + "; then :" + words + "; fi";
        case 1:
            return "for i in" + words + "; do : \"$i\"; done";
        case 2:
            return "case " + Word(0) + " in " + Word(0) + ") :" + words + ";; esac";
        case 3:
            return "( :" + words + " )";
        case 4:
            return "{ :" + words + "; }";
        case 5:
            return "cat <<E\n" + words + "\nE\n:";
        case 6:
            return "cat <<'E'\n" + words + "\nE\n:";
        case 7:
            return "v=" + Word(depth) + "; : \"$v\" $v";
        case 8:
            return "v=" + Word(depth) + " :" + words;
        case 9:
            return "eval :" + words;
        case 10:
            return "sh -c ': $0'" + words;
        case 11:
            return OneOf(Builtins()) + words + "; : '$val{bb}'";
        case 12:
            return OneOf(Variables()) + "=" + Word(depth) + " :" + words;
        case 13:
            return "f() { eval :" + words + "; }; f";
        case 14:
            return "{ echo :" + words + "; } | sh";
        case 15:
            return ":" + words + " # " + Word(0) + "\n:";
        default:
            return ":" + words;
    }
}

std::string AttackGrammar::Word(int depth) {
    std::string word;
    for (std::size_t count = 1 + Below(3); count > 0; --count) {
        word += Fragment(depth);
    }
    return word;
}

std::string AttackGrammar::Fragment(int depth) {
    switch (Below(depth > 0 ? 14 : 9)) {
        case 0:
        case 1:
            return "'" + Token() + "'";
        case 2:
            return "'a " + Token() + Token() + "'";
        case 3:
            return "\"" + Token() + "\"";
        case 4:
            return "\"b " + Token() + " c\"";
        case 5:
        case 6:
            return Token();
        case 7:
            return "x";
        case 8:
            return Below(3) == 0 ? Junk() : "y=";
        case 9:
            return "$(" + Command(depth - 1) + ")";
        case 10:
            return "\"$(" + Command(depth - 1) + ")\"";
        case 11:
            return "`: " + Word(0) + "`";
        case 12:
            return "${u:-" + Word(depth - 1) + "}";
        default:
            return "\"${u:-" + Word(depth - 1) + "}\"";
    }
}

std::string AttackGrammar::Token() {
    static const std::vector<std::string> tokens = {
        "$val{aa}",
        "$val{aa}",
        "$val{bb}",
        "$list{ll,',',true}",
        "$list{ll,' ',false}",
        "$multilist{ll,-p,true}",
        "$multilist{ll,-p,false}",
        "$if{aa,-a $val{aa}}",
        "$if{ll,-l}",
        "$if{zz,-z}",
    };
    return OneOf(tokens);
}

std::string AttackGrammar::Junk() {
    std::string junk;
    for (std::size_t count = 1 + Below(2); count > 0; --count) {
        junk += OneOf(Alphabet());
    }
    return junk;
}

std::string AttackGrammar::Value() {
    std::string value;
    for (std::size_t count = 1 + Below(4); count > 0; --count) {
        value += Below(8) == 0 ? OneOf(Alphabet()) : OneOf(ValueParts());
    }
    return value;
}

}  // namespace Corvel::Testing
