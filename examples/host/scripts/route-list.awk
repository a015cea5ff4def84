BEGIN { begin_list() }
{
    # "4 default via 192.0.2.1 dev eth0 metric 100", "4 unreachable 192.0.2.0/24 metric 1"
    split("", route)
    first = 2
    kind = "unicast"
    if ($2 ~ /^(unicast|local|broadcast|multicast|throw|unreachable|prohibit|blackhole|nat)$/) {
        kind = $2
        first = 3
    }
    for (i = first + 1; i < NF; i += 2) route[$i] = $(i + 1)
    if (ENVIRON["FILTER_INTERFACE"] != "" && route["dev"] != ENVIRON["FILTER_INTERFACE"]) next
    begin_structure("NetworkRoute")
    int_field("IP Version", $1)
    string_field("Destination", $first)
    string_field("Kind", kind)
    string_field("Gateway", route["via"])
    string_field("Interface", route["dev"])
    int_field("Metric", route["metric"])
    end_structure()
}
END { end_list() }
