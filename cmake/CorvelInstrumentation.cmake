# corvel_instrumentation: sanitizers and line counts, as the preset asks for them. Everything that
# we build links it privately, so that one preset instruments the whole tree.
add_library(corvel_instrumentation INTERFACE)

if(CORVEL_SANITIZE)
  target_compile_options(
    corvel_instrumentation INTERFACE -fsanitize=${CORVEL_SANITIZE} -fno-sanitize-recover=all
                                     -fno-omit-frame-pointer)
  target_link_options(corvel_instrumentation INTERFACE -fsanitize=${CORVEL_SANITIZE})
  if(CORVEL_SANITIZE MATCHES "address" AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    # GCC defines it itself.
    target_compile_definitions(corvel_instrumentation INTERFACE __SANITIZE_ADDRESS__=1)
  endif()
endif()

# corvel_fuzz_instrumentation: how the code that fuzzers explore tells them where they have been.
add_library(corvel_fuzz_instrumentation INTERFACE)

if(CORVEL_BUILD_FUZZERS)
  target_compile_options(
    corvel_fuzz_instrumentation
    INTERFACE -fsanitize=fuzzer-no-link
              -fsanitize-coverage-ignorelist=${PROJECT_SOURCE_DIR}/fuzz/unguided.txt)
endif()

if(CORVEL_COVERAGE)
  target_compile_options(corvel_instrumentation INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(corvel_instrumentation INTERFACE --coverage)
endif()
