BEGIN { begin_list() }
{
    # Eight columns without blanks, then the command's name, which may hold anything.
    name = $0
    for (i = 1; i <= 8; i++) sub(/^ *[^ ]+/, "", name)
    sub(/^ /, "", name)
    # A process of the kernel has no memory of its own.
    kernel = $7 == 0
    memory = int($6 / 1024)
    if (ENVIRON["FILTER_USER"] != "" && $3 != ENVIRON["FILTER_USER"]) next
    if (!selected(ENVIRON["FILTER_PIDS"], $1)) next
    if (!selected(ENVIRON["FILTER_STATES"], substr($4, 1, 1))) next
    if (ENVIRON["FILTER_COMMAND"] != "" && index(name, ENVIRON["FILTER_COMMAND"]) == 0) next
    if (memory < ENVIRON["FILTER_MEMORY"] + 0) next
    if (ENVIRON["FILTER_KERNEL"] != "" && kernel != is_true(ENVIRON["FILTER_KERNEL"])) next
    begin_structure("Process")
    int_field("PID", $1)
    int_field("Parent", $2)
    string_field("User", $3)
    string_field("State", substr($4, 1, 1))
    int_field("Threads", $5)
    int_field("Memory", memory)
    int_field("Seconds", $8)
    bool_field("Kernel", kernel)
    string_field("Command", name)
    end_structure()
}
END { end_list() }

function is_true(word) { return word ~ /^(1|yes|y|true|True|t|T)$/ ? 1 : 0 }
