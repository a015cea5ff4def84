# shellcheck shell=bash disable=SC2034,SC2154
# Sourced by scripts/bench: how the work grows. Each row shows what one item costs at each number of
# items, and the largest of these over the smallest.

# growth_row MEASURE COST...: the costs of one item, those for the smallest number of items first.
growth_row() {
    local measure=$1 spread
    shift
    spread=$(printf '%s\n' "$@" | sort -g | awk 'NR == 1 { low = $1 } END { printf "%.2f", $1 / low }')
    row G1 "$measure" "$*" "" "$spread" 1.20 1.20 max
}

# 10^4, 10^5 and 10^6 values: so many structures.
growth_structures=(1250 12500 125000)

value_growth() {
    local program=$1 name=$2 count rate costs=()
    for count in "${growth_structures[@]}"; do
        rate=$(median "$program" "$name/$count" items_per_second)
        costs+=("$(number %.1f "1e9 / ($rate * 8)")")
    done
    growth_row "$name: ns for a value at 10^4, 10^5, 10^6 values" "${costs[@]}"
}

heap_growth() {
    local count figure costs=()
    for count in "${growth_structures[@]}"; do
        figure=$("$bin/bench_memory" fields "$count")
        costs+=("$figure")
    done
    growth_row "bytes of heap for a value at 10^4, 10^5, 10^6 values" "${costs[@]}"
}

# start_growth MEASURE MAKE: what one more item costs when a process starts. MAKE COUNT sets `words` to
# the command line for so many items. The start with a single item, measured in turn with it, is
# deducted: it holds all that does not grow.
start_growth() {
    local measure=$1 make=$2 count base costs=() turns
    "$make" 1
    base=("${words[@]}")
    for count in 10 100 1000 10000; do
        turns=$runs
        # The fewer items, the smaller is the difference beside the noise of two starts.
        [ "$count" -ge 1000 ] || turns=$start_runs
        "$make" "$count"
        pair "$turns" 0 "${words[@]}" -- "${base[@]}"
        costs+=("$(number %.1f "($cpu_a - $cpu_b) * 1000 / ($count - 1)")")
    done
    growth_row "$measure" "${costs[@]}"
}

descriptor_help() {
    help_of_one "$1" unit00000
}

namespace_help() {
    generate namespace "$1" "wide-$1.xml"
    words=("$bin/quorcli" --plugin "$data/wide-$1.xml" wide list0 --help)
}

growth_rows() {
    local name
    run_program '^(json|xml|table|simple|python)/(1250|12500|125000)$' formatters
    for name in json xml table simple python; do
        value_growth formatters "$name"
    done
    run_program '^read/(1250|12500|125000)$' reader
    value_growth reader read
    heap_growth
    start_growth "us for a descriptor at 10, 100, 1,000, 10,000 of them, the start deducted" descriptor_help
    start_growth "us for a command at 10, 100, 1,000, 10,000 in one namespace, the start deducted" namespace_help
}
