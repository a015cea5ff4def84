# First the lines of `ip -oneline address`, then a line "--", then those of `ip -oneline link`.
BEGIN { begin_list(); reading_addresses = 1 }
$0 == "--" { reading_addresses = 0; next }
reading_addresses {
    # "2: eth0    inet 192.0.2.2/24 brd ..."
    if (match($0, /^[0-9]+: /)) {
        split($0, words, " ")
        key = words[1]
        if (key in addresses) words[4] = addresses[key] " " words[4]
        addresses[key] = words[4]
    }
    next
}
{
    # "2: eth0: <BROADCAST,UP> mtu 1500 qdisc ... state UP ...\    link/ether 02:.. brd ff:.."
    if (!match($0, /^[0-9]+: /)) next
    key = substr($0, 1, RLENGTH - 1)
    rest = substr($0, RLENGTH + 1)
    if (!match(rest, /: <[A-Z0-9,_-]*> /)) next
    name = substr(rest, 1, RSTART - 1)
    flags = substr(rest, RSTART + 3, RLENGTH - 5)
    rest = substr(rest, RSTART + RLENGTH)
    sub(/@[^@]*$/, "", name)
    up = ("," flags ",") ~ /,UP,/
    if (ENVIRON["FILTER_NAME"] != "" && index(name, ENVIRON["FILTER_NAME"]) == 0) next
    if (ENVIRON["FILTER_UP"] != "" && !up) next
    begin_structure("NetworkInterface")
    string_field("Name", name)
    bool_field("Up", up)
    string_field("State", word_after(rest, "state"))
    int_field("MTU", word_after(rest, "mtu"))
    string_field("Hardware Address", match(rest, /link\/[a-z0-9_-]+ [0-9a-f:.]+/) ? hardware_address(substr(rest, RSTART, RLENGTH)) : "")
    string_field("Addresses", addresses[key])
    end_structure()
}
END { end_list() }

function word_after(text, key,    words, n, i) {
    n = split(text, words, " ")
    for (i = 1; i < n; i++) if (words[i] == key) return words[i + 1]
    return ""
}

function hardware_address(link) { sub(/^[^ ]* /, "", link); return link }
