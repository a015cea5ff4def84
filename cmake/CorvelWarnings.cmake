# corvel_warnings: the warnings of all our own code, for private use. The presets make every one an
# error; a build with other flags or another compiler goes on.
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
            -Woverloaded-virtual)
