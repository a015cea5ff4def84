# Sourced by cases that run the example descriptors: the tools of the host are replaced by ones that
# print the same on every host, and names that are hard to handle.
project=$GOLDEN_CASE/../../../..
PATH=$project/tests/golden/data/tools:$PATH
CORVEL_EXAMPLES=$project/examples/host
export PATH CORVEL_EXAMPLES

examples() {
    quorcli --plugin-dir "$CORVEL_EXAMPLES" "$@"
}
