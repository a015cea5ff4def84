# shellcheck shell=bash disable=SC2034
# Sourced by the scripts of this folder: where the project is, and what its steps need.

set -euo pipefail

project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# What building needs, and what the examples run.
build_packages=(
    ccache cmake g++ git libboost1.81-dev libgmock-dev libgtest-dev libxml2-dev ninja-build pkg-config
)
example_packages=(coreutils iproute2 mawk procps util-linux)
# What the tests run besides.
test_packages=(
    abigail-tools bash binutils busybox dash libclang-common-14-dev liblsan0 libxml2-utils mksh python3
    python3-clang-14 strace
)
# What scripts/valgrind needs besides.
valgrind_packages=(valgrind)
# What the preset asan needs besides, which builds the fuzzers and the benchmarks, too.
asan_packages=(clang libbenchmark-dev libclang-rt-14-dev python3 rapidjson-dev valgrind)

install_packages() {
    "$project/scripts/install-packages" "$@"
}

# build_preset PRESET [TARGET...]: configures (only where that is not done yet) and builds one preset,
# the whole of it unless targets are named.
build_preset() {
    local preset=$1
    shift
    cd "$project"
    [ -e "build/$preset/build.ninja" ] || cmake --preset "$preset" >&2
    cmake --build --preset "$preset" ${1:+--target "$@"} -- -j"$(nproc)" >&2
}

# record_row HEADING ROW: adds a row at the end of the table that stands under the heading in
# docs/soak.md.
record_row() {
    local document=$project/docs/soak.md new
    new=$(heading="## $1" row=$2 awk '
        $0 == ENVIRON["heading"] { isUnder = 1 }
        isInTable && !/^[|]/ { print ENVIRON["row"]; isInTable = isUnder = 0 }
        isUnder && /^[|]/ { isInTable = 1 }
        { print }
        END { if (isInTable) print ENVIRON["row"] }' "$document")
    printf '%s\n' "$new" >"$document"
}
