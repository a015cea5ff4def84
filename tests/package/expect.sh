# shellcheck shell=bash
# What the examples print, whichever way they were built. The installed program is told where its
# library is: the staging folder is none of the system's.

# expect COMMAND...: the command ends with status 0 and prints what is on standard input.
expect() {
    local answer
    answer=$("$@") || { echo "failed: $*"; exit 1; }
    diff - <(printf '%s\n' "$answer") || { echo "the output above is that of: $*"; exit 1; }
}

# expect_embedding PROJECT FOLDER: the two programs of examples/embedding.
expect_embedding() {
    expect "$2/embedding" greeting get --name World <<'OUTPUT'
Greeting:
   Text: Hello, World!
OUTPUT
    expect "$2/direct" "$1/examples/greeting.xml" World <<'OUTPUT'
The host has these bytes:
{
   "Text": "Hello, World!"
}
OUTPUT
}

# The numbers change from call to call, the shape does not.
expect_hostinfo() {
    local staging=$1 plugin=$2 library_folder
    library_folder=$(dirname "$(find "$staging" -name libcorvel.so.1)")
    # shellcheck disable=SC2317  # expect calls it
    quorcli_with_plugin() {
        LD_LIBRARY_PATH=$library_folder "$staging/bin/quorcli" --plugin "$plugin" "$@" | sed -E 's/[0-9]+(\.[0-9]+)?/N/g'
    }
    expect quorcli_with_plugin --formatter python --format-param fields:Memory=Total host memory get <<'OUTPUT'
{"Available": N, "Cached": N, "Free": N, "Swap Free": N, "Swap Total": N, "Total": N, }
OUTPUT
    expect quorcli_with_plugin host load get <<'OUTPUT'
Load:
   N Minute  : N
   N Minutes : N
   N Minutes: N
   Running   : N
   Threads   : N
OUTPUT
    expect quorcli_with_plugin --format-param fields:Processor=Number --format-param show-header=false host cpu list --number 0 <<'OUTPUT'
     N  
OUTPUT
}
