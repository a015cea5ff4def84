BEGIN { begin_list() }
{
    read_pairs($0, pairs)
    if (!("NAME" in pairs) || !selected(ENVIRON["FILTER_KINDS"], pairs["TYPE"])) next
    if (!selected(ENVIRON["FILTER_READ_ONLY"], pairs["RO"])) next
    begin_structure("BlockDevice")
    string_field("Name", pairs["NAME"])
    string_field("Kind", pairs["TYPE"])
    int_field("Size", mebibytes(pairs["SIZE"]))
    bool_field("Read Only", pairs["RO"] == "1")
    bool_field("Removable", pairs["RM"] == "1")
    string_field("File System", pairs["FSTYPE"])
    string_field("Mount Point", pairs["MOUNTPOINT"])
    string_field("Model", pairs["MODEL"])
    end_structure()
}
END { end_list() }
