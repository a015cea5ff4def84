BEGIN { begin_list() }
{
    read_pairs($0, pairs)
    if (!("TARGET" in pairs) || !selected(ENVIRON["FILTER_TYPES"], pairs["FSTYPE"])) next
    use = pairs["SIZE"] > 0 ? int(100 * pairs["USED"] / pairs["SIZE"] + 0.5) : 0
    if (use < ENVIRON["FILTER_MINIMUM"] + 0) next
    begin_structure("FileSystem")
    string_field("Source", pairs["SOURCE"])
    string_field("Type", pairs["FSTYPE"])
    int_field("Size", mebibytes(pairs["SIZE"]))
    int_field("Used", mebibytes(pairs["USED"]))
    int_field("Available", mebibytes(pairs["AVAIL"]))
    int_field("Use", use)
    string_field("Mount Point", pairs["TARGET"])
    end_structure()
}
END { end_list() }
