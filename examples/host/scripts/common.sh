# shellcheck shell=sh
# Shared by the scripts of this folder: the locale, and how a failure is told.
#
# A line "ERROR:text" on standard output is what makes the command fail with that text.

LC_ALL=C
export LC_ALL

scripts=${0%/*}

fail() {
    printf 'ERROR:%s\n' "$*"
    exit 1
}

# Runs awk with the value document functions and the given program.
values_awk() {
    awk -f "$scripts/values.awk" -f "$scripts/$1"
}

# Reads the output of a tool into $tool_output, or fails by the tool's name.
run_tool() {
    command -v "$1" >/dev/null || fail "$1 is not installed"
    tool_output=$("$@" 2>&1) || fail "$1 failed: $(printf '%s' "$tool_output" | head -n 1)"
}
