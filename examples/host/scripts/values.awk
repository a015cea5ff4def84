# Writes value documents: the XML that an extension command prints as its result.
#
# Every name and text goes through xml_text, so no file, user or interface name can break the
# document, whatever bytes it is made of. Run awk in the C locale: bytes are what is looked at.

# The text as XML character data: markup characters as entities; bytes that XML cannot hold
# (control characters, and whatever is not well-formed UTF-8) as \xHH.
function xml_text(text,    out, n) {
    gsub(/&/, "\\&amp;", text)
    gsub(/</, "\\&lt;", text)
    gsub(/>/, "\\&gt;", text)
    gsub(/"/, "\\&quot;", text)
    out = ""
    while (text != "") {
        n = plain_length(text)
        if (n > 0) {
            out = out substr(text, 1, n)
            text = substr(text, n + 1)
        } else {
            out = out sprintf("\\x%02x", byte_value(substr(text, 1, 1)))
            text = substr(text, 2)
        }
    }
    return out
}

# How many bytes at the front of the text may stand in the document as they are.
function plain_length(text) {
    if (match(text, /^[\040-\176]+/)) return RLENGTH
    if (match(text, /^[\302-\337][\200-\277]/)) return 2
    if (match(text, /^\340[\240-\277][\200-\277]/)) return 3
    if (match(text, /^\355[\200-\237][\200-\277]/)) return 3
    # U+FFFE and U+FFFF are no characters of XML.
    if (match(text, /^\357\277[\276\277]/)) return 0
    if (match(text, /^[\341-\354\356\357][\200-\277][\200-\277]/)) return 3
    if (match(text, /^\360[\220-\277][\200-\277][\200-\277]/)) return 4
    if (match(text, /^[\361-\363][\200-\277][\200-\277][\200-\277]/)) return 4
    if (match(text, /^\364[\200-\217][\200-\277][\200-\277]/)) return 4
    return 0
}

function byte_value(byte,    i) {
    if (!byte_values_made) {
        for (i = 1; i < 256; i++) byte_values[sprintf("%c", i)] = i
        byte_values_made = 1
    }
    return byte_values[byte]
}

function begin_list() { print "<output><list type=\"structure\">" }
function end_list() { print "</list></output>" }

function begin_structure(type) { printf "<structure typeName=\"%s\">", type }
function end_structure() { print "</structure>" }

function field(name, element, text) {
    printf "<field name=\"%s\"><%s>%s</%s></field>", name, element, xml_text(text), element
}
function string_field(name, text) { field(name, "string", text) }
function int_field(name, number) { field(name, "int", sprintf("%.0f", number)) }
function bool_field(name, truth) { field(name, "bool", truth ? "true" : "false") }

# Reads one line of KEY="value" pairs, as findmnt and lsblk print them, into pairs[KEY]. They write
# special bytes as \xHH; those are turned back into the bytes that they stand for.
function read_pairs(line, pairs,    key, rest) {
    split("", pairs)
    rest = line
    while (match(rest, /[A-Za-z0-9%:_-]+="/)) {
        key = substr(rest, RSTART, RLENGTH - 2)
        rest = substr(rest, RSTART + RLENGTH)
        if (!match(rest, /"/)) break
        pairs[key] = unescape_hex(substr(rest, 1, RSTART - 1))
        rest = substr(rest, RSTART + 1)
    }
}

function unescape_hex(text,    out) {
    out = ""
    while (match(text, /\\x[0-9a-fA-F][0-9a-fA-F]/)) {
        out = out substr(text, 1, RSTART - 1) \
            sprintf("%c", 16 * hex_digit(substr(text, RSTART + 2, 1)) + hex_digit(substr(text, RSTART + 3, 1)))
        text = substr(text, RSTART + 4)
    }
    return out text
}

function hex_digit(digit) { return index("0123456789abcdef", tolower(digit)) - 1 }

# Whether the value is one of the lines of the list; an empty list holds everything.
function selected(list, value) { return list == "" || index("\n" list, "\n" value "\n") > 0 }

function mebibytes(bytes) { return int(bytes / 1048576) }
