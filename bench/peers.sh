# shellcheck shell=bash disable=SC2034,SC2154
# Sourced by scripts/bench: applications of other frameworks with the 800 commands of 100 descriptors,
# from Debian's packages. They are yardsticks only, made below the folder of the data.

peer_packages=(golang-go golang-github-spf13-cobra-dev python3-cliff)
peers=$data/peers

# for_each_command UNIT LIST: calls UNIT NAME for each group, and LIST NAME NUMBER for each command of it.
for_each_command() {
    local unit name number
    for unit in {0..99}; do
        printf -v name 'unit%05d' "$unit"
        "$1" "$name"
        for number in {0..7}; do
            "$2" "$name" "$number"
        done
    done
}

go_unit() {
    printf '\tunit = addUnit("%s")\n' "$1"
}

go_list() {
    printf '\taddList(unit, "list%d", "List the devices of group %d with their sizes and states.")\n' "$2" "$2"
}

build_cobra() {
    mkdir -p "$peers/cobra"
    cp bench/peers/main.go "$peers/cobra"
    {
        printf 'package main\n\nimport "github.com/spf13/cobra"\n\nfunc init() {\n\tvar unit *cobra.Command\n'
        for_each_command go_unit go_list
        printf '}\n'
    } >"$peers/cobra/commands.go"
    # Debian's sources of cobra, and nothing from elsewhere.
    (cd "$peers/cobra" && GO111MODULE=off GOPATH=/usr/share/gocode GOCACHE=$project/$peers/go-cache \
        go build -o devices .)
}

python_unit() {
    printf 'import devices\n' >"$peers/cliff/$1.py"
}

python_list() {
    printf '\n\nclass List%d(devices.ListCommand):\n    """List the devices of group %d with their sizes and states."""\n' \
        "$2" "$2" >>"$peers/cliff/$1.py"
    printf '%s_list%d = %s:List%d\n' "$1" "$2" "$1" "$2"
}

build_cliff() {
    local metadata=$peers/cliff/devices-1.0.dist-info
    mkdir -p "$metadata"
    cp bench/peers/devices.py "$peers/cliff"
    printf 'Metadata-Version: 2.1\nName: devices\nVersion: 1.0\n' >"$metadata/METADATA"
    {
        printf '[devices.commands]\n'
        for_each_command python_unit python_list
    } >"$metadata/entry_points.txt"
}

# peer_row NAME MUST AIM COMMAND...: the help of the same command, which it must know.
peer_row() {
    local name=$1 must=$2 aim=$3 help
    shift 3
    help=$("$@")
    [[ $help == *"List the devices of group 3"*"--depth"* ]] || { echo "$name printed: ${help:0:200}" >&2; return 1; }
    help_of_one 100
    pair "$start_runs" 0 "${words[@]}" -- "$@"
    process_row S3 "100 descriptors, help of one command / the same of 800 with $name" "$must" "$aim"
}

peer_rows() {
    build_cobra
    build_cliff
    peer_row cobra 1.5 0.9 "$peers/cobra/devices" unit00007 list3 --help
    # What it knows of its entry points is kept from one run to the next, as it is by default.
    export XDG_CACHE_HOME=$project/$peers/cache
    peer_row cliff 0.08 0.05 /usr/bin/python3 "$peers/cliff/devices.py" unit00007 list3 --help
    unset XDG_CACHE_HOME
}
