# corvel_instrumentation: sanitizers and line counts, as the preset asks for them. Everything that
# we build links it privately, so that one preset instruments the whole tree.
add_library(corvel_instrumentation INTERFACE)

if(CORVEL_SANITIZE)
  target_compile_options(
    corvel_instrumentation INTERFACE -fsanitize=${CORVEL_SANITIZE} -fno-sanitize-recover=all
                                     -fno-omit-frame-pointer)
  target_link_options(corvel_instrumentation INTERFACE -fsanitize=${CORVEL_SANITIZE})
endif()

if(CORVEL_COVERAGE)
  target_compile_options(corvel_instrumentation INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(corvel_instrumentation INTERFACE --coverage)
endif()
