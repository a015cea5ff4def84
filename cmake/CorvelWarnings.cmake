# corvel_warnings: the warnings of all our own code, for private use. Every one is an error.
add_library(corvel_warnings INTERFACE)
target_compile_options(
  corvel_warnings
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wconversion
            -Wsign-conversion
            -Wshadow
            -Wcast-align
            -Wold-style-cast
            -Woverloaded-virtual
            -Werror)
