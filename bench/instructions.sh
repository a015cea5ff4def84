# shellcheck shell=bash disable=SC2034,SC2154
# Sourced by scripts/bench: instruction counts, which hardly depend on how busy the machine is.

# What the counts must not depend on: an environment, whose size is part of what starting a process
# costs, and the variants of its string functions that the C library chooses by processor and cache.
fixed_environment=(
    "GLIBC_TUNABLES=glibc.cpu.hwcaps=-AVX2,-AVX,-AVX512F,-AVX512VL,-AVX512BW,-ERMS,-FSRM,-BMI2:glibc.cpu.x86_non_temporal_threshold=0xc0000"
)

# count_instructions LABEL STATUS ARGUMENT...: of a program that must end with that status. The words
# are the same in every clone, for they name files below it.
count_instructions() {
    local label=$1 expected=$2 status=0 counted
    shift 2
    env -i "${fixed_environment[@]}" valgrind --tool=callgrind --callgrind-out-file=/dev/null "$@" \
        >/dev/null 2>"$data/callgrind.log" || status=$?
    counted=$(sed -n 's/^==[0-9]*== Collected : //p' "$data/callgrind.log")
    if [ "$status" != "$expected" ] || [ -z "$counted" ]; then
        cat "$data/callgrind.log" >&2
        echo "No count of $label: status $status of $*" >&2
        return 1
    fi
    printf '%s %s\n' "$label" "$counted"
}

instruction_counts() {
    help_of_one 100
    echo "# Instructions as callgrind counts them, written by scripts/bench --instructions --record."
    echo "# S0 quorcli --help; S1 the help of one of 800 commands; F1 json and R1 reading, 10,000"
    echo "# structures each. $(gcc --version | head -1); libxml2 $(version_of libxml2)."
    # The usage ends with status 1.
    count_instructions S0 1 "$bin/quorcli" --help
    count_instructions S1 0 "${words[@]}"
    count_instructions F1 0 --collect-atstart=no "$bin/bench_once" json 10000
    count_instructions R1 0 --collect-atstart=no "$bin/bench_once" read 10000
}
