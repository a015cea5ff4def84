# corvel_add_component(OBJECTS <target> SOURCES <file>... [PUBLIC_HEADERS <file>...])
#
# Adds one folder of the library: its sources to an object library, its public headers to the one
# header set of the shared library, from which installation, export and the check that every
# header compiles on its own are made.
function(corvel_add_component)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "OBJECTS" "SOURCES;PUBLIC_HEADERS")
  list(TRANSFORM arg_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
  list(TRANSFORM arg_PUBLIC_HEADERS PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
  if(arg_SOURCES)
    target_sources(${arg_OBJECTS} PRIVATE ${arg_SOURCES})
  endif()
  if(arg_PUBLIC_HEADERS)
    target_sources(corvel PUBLIC FILE_SET HEADERS FILES ${arg_PUBLIC_HEADERS})
  endif()
endfunction()

# corvel_configure_objects(<target>): an object library that goes into libcorvel.so. Everything is
# hidden but what CORVEL_EXPORT marks.
function(corvel_configure_objects target)
  target_compile_features(${target} PRIVATE cxx_std_20)
  set_target_properties(
    ${target}
    PROPERTIES POSITION_INDEPENDENT_CODE ON
               CXX_VISIBILITY_PRESET hidden
               VISIBILITY_INLINES_HIDDEN ON)
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${target} PRIVATE corvel_warnings corvel_instrumentation
                                          corvel_fuzz_instrumentation corvel_hardening)
endfunction()
