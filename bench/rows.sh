# shellcheck shell=bash disable=SC2034,SC2154
# Sourced by scripts/bench: takes the figures, and prints the table one row after the other.

# What the gate looks for: the label of every row of a quick run, and of those that only a full run
# has.
quick_labels=(S0 S1 S2 C1 C1 F1 F2 F3 F4 F4 F4 F4 R1 R2 M1 M1 E1)
full_labels=(S3 S3 G1 G1 G1 G1 G1 G1 G1 G1 G1)

# generate KIND COUNT NAME: makes data that is not there yet. Who changes the sample values removes
# the folder.
generate() {
    [ -e "$data/$3" ] || "$bin/bench_data" "$1" "$2" "$data/$3"
}

# help_of_one COUNT [UNIT]: the command line, in `words`, that is timed with COUNT descriptors: it
# resolves one command and prints its help.
help_of_one() {
    generate descriptors "$1" "descriptors-$1"
    words=("$bin/quorcli" --plugin-dir "$data/descriptors-$1" "${2:-unit00007}" list3 --help)
}

# number FORMAT EXPRESSION: computes with awk.
number() {
    awk "BEGIN { printf \"$1\", ($2) }"
}

# row LABEL MEASURE PRODUCT YARDSTICK RATIO MUST AIM DIRECTION [JUDGED]: prints a line of the table
# and keeps what the gate judges, the ratio unless another figure is JUDGED. DIRECTION is max where
# smaller is better, else min.
row() {
    local verdict
    verdict=$(awk -v x="$5" -v must="$6" -v aim="$7" -v direction="$8" 'BEGIN {
        sign = direction == "max" ? 1 : -1
        print (sign * x <= sign * aim ? "aim" : sign * x <= sign * must ? "must" : "no") }')
    printf '| %s | %s | %s | %s | %s | %s | %s | %s |\n' "$1" "$2" "$3" "$4" "$5" "$6" "$7" "$verdict"
    printf '%s\t%s\t%s\t%s\t%s\n' "$1" "${9-$5}" "$6" "$8" "$2" >>"$data/ratios"
}

# take_pair COMMAND...: runs what prints the line of a pair. Sets wall_a wall_b wall cpu_a cpu_b cpu:
# milliseconds of both, and their ratio.
take_pair() {
    local figures
    figures=$("$@")
    read -r wall_a wall_b wall cpu_a cpu_b cpu <<<"$figures"
}

# pair RUNS STATUS COMMAND... -- YARDSTICK...: runs both in turn, see bench_pair and take_pair.
pair() {
    take_pair "$bin/bench_pair" "$@"
}

# process_row LABEL MEASURE MUST AIM: what `pair` has found. A busy machine distorts wall time, so the
# gate judges the better one of both ratios.
process_row() {
    row "$1" "$2" "$wall_a ms ($cpu_a ms CPU)" "$wall_b ms ($cpu_b ms CPU)" "$wall" "$3" "$4" max \
        "$(number '%.3f' "$wall < $cpu ? $wall : $cpu")"
    echo "$1 $cpu" >>"$data/cpu-ratios"
}

start_rows() {
    pair "$start_runs" 1 "$bin/quorcli" --help -- "$bin/bench_iostream"
    process_row S0 "\`quorcli --help\` / a process that links iostream" 1.30 1.18
    help_of_one 100
    pair "$start_runs" 0 "${words[@]}" -- "$bin/bench_xml_files" "$data/descriptors-100"
    process_row S1 "100 descriptors, help of one command / \`xmlReadFile\` of them" 0.60 0.40
    help_of_one 1000
    pair "$runs" 0 "${words[@]}" -- "$bin/bench_xml_files" "$data/descriptors-1000"
    process_row S2 "1,000 descriptors / the same" 0.50 0.35
}

# run_program FILTER PROGRAM: a Google Benchmark program, product and yardstick in random turn; medians
# go to a file.
run_program() {
    local results=$data/$2
    if ! CORVEL_BENCH_CELLS=$data/cells LC_ALL=C "$bin/bench_$2" --benchmark_filter="$1" \
        --benchmark_repetitions="$runs" --benchmark_min_time="$min_time" \
        --benchmark_enable_random_interleaving=true --benchmark_report_aggregates_only=true \
        --benchmark_out_format=json --benchmark_out="$results.json" >"$results.log" 2>&1
    then
        cat "$results.log" >&2
        return 1
    fi
}

# median PROGRAM BENCHMARK KEY: one median, as it stands in what the program wrote.
median() {
    awk -v name="\"name\": \"$2_median\"," -v key="\"$3\":" '
        index($0, name) { inside = 1 }
        inside && $1 == key { gsub(/[",]/, "", $2); print $2; found = 1; exit }
        END { if (!found) { print "no median of " name > "/dev/stderr"; exit 1 } }' "$data/$1.json"
}

child_rows() {
    local megabytes
    for megabytes in 0 500; do
        take_pair "$bin/bench_child" "$child_runs" "$megabytes"
        process_row C1 "shell command with $megabytes MB in use / bare \`posix_spawn\` with two pipes" 1.10 1.03
    done
}

speed() {
    local bytes
    bytes=$(median formatters "$1/$structures" bytes_per_second)
    number %.0f "$bytes / 1e6"
}

# speed_row LABEL MEASURE OURS YARDSTICK MUST AIM: MB/s of both.
speed_row() {
    row "$1" "$2" "$3 MB/s" "$4 MB/s" "$(number %.2f "$3 / $4")" "$5" "$6" min
}

formatter_rows() {
    local json rapidjson xml writer table column name ours
    run_program "/$structures(/|\$)" formatters
    json=$(speed json)
    rapidjson=$(speed json-rapidjson)
    speed_row F1 "JSON / RapidJSON PrettyWriter" "$json" "$rapidjson" 1.5 2.5
    xml=$(speed xml)
    writer=$(speed xml-textwriter)
    speed_row F2 "XML / libxml2 xmlTextWriter" "$xml" "$writer" 15 30
    table=$(median formatters "table/$structures" cpu_time)
    column=$(median formatters "table-column/$structures/manual_time" real_time)
    row F3 "table / \`column -t\` on its cells" "$(number '%.1f ms' "$table")" \
        "$(number '%.1f ms' "$column")" "$(number %.1f "$column / $table")" 25 40 min
    for name in simple python; do
        ours=$(speed "$name")
        speed_row F4 "$name / RapidJSON PrettyWriter" "$ours" "$rapidjson" 1.5 2.5
        speed_row F4 "$name / our JSON" "$ours" "$json" 1.0 1.0
    done
}

# memory_row LABEL MEASURE MUST AIM UNIT YARDSTICK KIND [FILE]: a figure of bench_memory.
memory_row() {
    local figure
    figure=$("$bin/bench_memory" "${@:7}")
    row "$1" "$2" "$figure$5" "$6" "$figure" "$3" "$4" max
}

# warm_reading: R1 once more, without the page faults of fresh memory.
warm_reading() {
    local values tree
    run_program "/$structures\$" reader
    values=$(median reader "read/$structures" cpu_time)
    tree=$(median reader "read-xmlreadmemory/$structures" cpu_time)
    printf 'R1 again and again in one process, its memory warm: %s ms, xmlReadMemory %s ms, a ratio of %s.\n' \
        "$(number %.0f "$values")" "$(number %.0f "$tree")" "$(number %.2f "$tree / $values")"
}

reader_rows() {
    local tree faster
    generate document "$structures" document.xml
    pair "$runs" told "$bin/bench_read_values" "$data/document.xml" \
        -- "$bin/bench_read_tree" "$data/document.xml"
    faster=$(number %.2f "1 / $wall")
    cpu=$(number %.2f "1 / $cpu")
    row R1 "reading 47 MB in a fresh process: how much faster than xmlReadMemory + free" \
        "$wall_a ms ($cpu_a ms CPU)" "$wall_b ms ($cpu_b ms CPU)" "$faster" 4 5 min \
        "$(number %.2f "$faster > $cpu ? $faster : $cpu")"
    echo "R1 $cpu" >>"$data/cpu-ratios"
    tree=$("$bin/bench_memory" libxml-peak "$data/document.xml")
    memory_row R2 "peak memory that reading adds / the size of the text" 1.8 1.6 "" \
        "$tree (xmlReadMemory)" read-peak "$data/document.xml"
    memory_row M1 "heap of a field value, list made by a program" 64 45 " B" "" fields "$structures"
    memory_row M1 "the same, list read from a document" 64 45 " B" "" read-fields "$data/document.xml"
}

write_extension() {
    {
        printf '<extension><version>1.0.0</version><namespaces><namespace path="bench">'
        printf '<description>Bench.</description></namespace></namespaces><commands>'
        printf '<command path="bench.show"><input-spec/><output-spec><list type="structure">'
        printf '<structure typeName="Disk"><field name="Blocks"><int/></field>'
        printf '<field name="%s"><string/></field>' Device FileSystem Identifier MountPoint
        printf '<field name="Removable"><bool/></field><field name="SectorSize"><int/></field>'
        printf '<field name="Serial"><int/></field></structure></list></output-spec>'
        printf '<format-parameters><formatter>table</formatter></format-parameters>'
        printf '<execute>cat %s</execute></command></commands></extension>\n' "$data/document.xml"
    } >"$data/show.xml"
}

extension_row() {
    local lines
    write_extension
    words=("$bin/quorcli" --plugin "$data/show.xml" bench show)
    lines=$("${words[@]}" | grep -c '/dev/nvme[0-9]*n1')
    [ "$lines" -eq "$structures" ] || { echo "The extension command printed $lines rows" >&2; return 1; }
    pair "$runs" 0 "${words[@]}" -- cat "$data/document.xml"
    row E1 "seconds until an extension command has printed those 47 MB as a table / 1 s" \
        "$wall_a ms ($cpu_a ms CPU)" "$wall_b ms (\`cat\` alone)" "$(number %.3f "$wall_a / 1000")" 0.6 0.4 max \
        "$(number %.3f "($wall_a < $cpu_a ? $wall_a : $cpu_a) / 1000")"
}
