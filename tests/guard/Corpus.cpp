#include "tests/guard/Corpus.h"

namespace Corvel::Testing {

const std::vector<GuardedTemplate>& Corpus() {
    static const std::vector<GuardedTemplate> corpus = {
        // Single values.
        {": $val{aa}"},
        {": '$val{aa}'"},
        {": \"$val{aa}\""},
        {": \"a '$val{aa}'\""},
        {": 'a $val{aa}'"},
        {": '$val{aa} b'"},
        {": '$val{aa}$val{bb}'"},
        {": 'a'$val{aa}'b'"},
        {": 'a $val{aa}' '$val{bb}'"},
        {": '$val{aa}' $val{aa}"},
        {": $val{aa} '$val{aa}'"},
        {": $val{aa} --safe"},
        {": a$val{aa}b"},
        {": $val{aa}$val{bb}"},
        {": --option=$val{aa} '--option=$val{bb}'"},
        {": \\$val{aa} '$val{bb}'"},
        {": \"\\$val{aa}\" '$val{bb}'"},
        {": $$val{aa} \"$$val{bb}\""},
        {": $HOME$val{aa} \"$HOME$val{bb}\""},
        {": ~$val{aa} a=$val{bb}"},
        {"# '$val{aa}' $val{bb}\n: b"},
        {": a # $val{aa}"},
        {": $val{aa}; : '$val{bb}'"},
        {": $val{aa}\n: '$val{bb}'\n"},
        // Lists.
        {": $list{ll,',',true}"},
        {": $list{ll,',',false}"},
        {": $list{ll,' ',false}"},
        {": $list{ll,';',false} $list{ll,'',true}"},
        {": '$list{ll,',',false}'"},
        {": \"$list{ll,':',false}\""},
        {": $multilist{ll,--path,true}"},
        {": $multilist{ll,--path,false}"},
        {": '$multilist{ll,--path,false}'"},
        {": $multilist{ll,--path,true} '$val{aa}'"},
        {": $multilist{ll,--x $val{aa},true}"},
        {": $list{ll,',',true}$val{aa}"},
        // Conditionals.
        {": $if{aa,--first '$val{aa}'} $if{bb,--second $val{bb}}"},
        {": $if{ll,$multilist{ll,--path,false}} $if{cc,--third}"},
        {": $if{aa,'$val{aa}} '$val{bb}'", false, true},
        // What is to the left and to the right of commands.
        {"a=$val{aa} : b"},
        {"a='$val{aa}'; : \"$a\" $a"},
        {"a=\"$val{aa}\" b=$val{bb}; : $b"},
        {"$val{aa}=b; : '$val{bb}'"},
        {"true >$val{aa} a '$val{bb}'"},
        {"true >/dev/null$val{aa}"},
        {">/dev/null </dev/null$val{aa} true '$val{bb}'"},
        {"true $val{aa}>/dev/null"},
        {"true 2$val{aa}>/dev/null"},
        {"true <&$val{aa} '$val{bb}'", false, true},
        {"test -d $val{aa} && : '$val{aa}'"},
        {"test -d '$val{aa}' || : $val{bb}"},
        {"[ '$val{aa}' = \"$val{bb}\" ] && : b"},
        {"[ '$val{aa}' -eq 1 ] || : b"},
        {": $val{aa} | : '$val{bb}' | cat", false, true},
        {"echo ': $val{aa}' | sh", false, true},
        {"cat <$val{aa} 2>/dev/null; : a", false, true},
        {"export 'a=$val{aa}'; export $val{bb}"},
        {"unset '$val{aa}'; : b"},
        // Compound commands.
        {"if test a = '$val{aa}'; then : $val{aa}; else : '$val{bb}'; fi"},
        {"for i in $val{aa}; do : \"$i\"; done"},
        {"for $val{aa} in a; do : '$val{bb}'; done", false, true},
        {"case $val{aa} in a) : '$val{aa}';; *) : $val{bb};; esac"},
        {"case '$val{aa}' in $val{bb}) : a;; *) : b;; esac"},
        {"case a in\n$val{aa}) : a;;\n$val{bb}|b) : b;;\nesac", false, true},
        {"( : $val{aa} ); { : '$val{bb}'; }", false, true},
        {"f() { : $val{aa}; }; f '$val{bb}'"},
        {"while test -n '$val{aa}'; do : $val{aa}; break; done"},
        // Expansions and documents.
        {": `: $val{aa}`"},
        {": `: '$val{aa}'` '$val{bb}'"},
        {": \"`: \\\"$val{aa}\\\"`\""},
        {": $(: $val{aa})"},
        {": \"$(: '$val{aa}')\" '$val{bb}'"},
        {": $(case a in a) : '$val{aa}';; esac) '$val{bb}'"},
        {": ${x:-$val{aa}} \"${x:-$val{bb}}\""},
        {": ${x$val{aa}} '$val{bb}'"},
        {": $(($val{aa})) $((1 + $val{bb}))"},
        {": <<E\n$val{aa}\nE\n: '$val{bb}'"},
        {": <<'E'\n$val{aa}\n'$val{bb}'\nE\n"},
        {": <<-E\n\t$val{aa} $(: $val{bb})\nE"},
        {": <<$val{aa}\na\n$val{aa}\n: '$val{bb}'", false, true},
        {": <<E <<F\n$val{aa}\nE\n$val{bb}\nF\n"},
        // Other interpreters.
        {"eval : $val{aa}"},
        {"eval \": '$val{aa}'\""},
        {"sh -c ': $val{aa}'"},
        {"sh -c ': \"$1\"' a '$val{aa}'", false, true},
        {"sh $val{aa} ': a' '$val{bb}'", false, true},
        {"env a=b timeout 9 sh -ec \": $val{aa}\""},
        {"trap ': $val{aa}' 0"},
        {"awk 'BEGIN { x = \"$val{aa}\" }'"},
        {"awk -v 'a=$val{aa}' 'BEGIN { x = a }'", false, true},
        {"echo a | sed 's/a/$val{aa}/'"},
        {"exec env true '$val{aa}'", false, true},
        // Where the template makes a command of the value.
        {"$val{aa}", true},
        {"'$val{aa}' '$val{bb}'", true},
        {"$val{aa} '$val{bb}'", true},
        {"$val{aa} b", true},
        {": $($val{aa})", true},
        {": `$val{aa}`", true},
        {"sh -c '$val{aa}'", true},
        {"eval $val{aa}", true},
        {"env $val{aa}", true},
        {"! $val{aa}; : '$val{bb}'", true},
    };
    return corpus;
}

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
    switch (Below(16)) {
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
    static const std::vector<std::string> tokens = {"$val{aa}",
                                                    "$val{aa}",
                                                    "$val{bb}",
                                                    "$list{ll,',',true}",
                                                    "$list{ll,' ',false}",
                                                    "$multilist{ll,-p,true}",
                                                    "$multilist{ll,-p,false}",
                                                    "$if{aa,-a $val{aa}}",
                                                    "$if{ll,-l}",
                                                    "$if{zz,-z}"};
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
    static const std::vector<std::string> parts = {";id",
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
                                                   "x"};
    std::string value;
    for (std::size_t count = 1 + Below(4); count > 0; --count) {
        value += Below(8) == 0 ? OneOf(Alphabet()) : OneOf(parts);
    }
    return value;
}

}  // namespace Corvel::Testing
