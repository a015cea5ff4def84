# The libraries that the product calls.
#
# corvel_libxml2_headers: what is needed to open libxml2 at run time, when the first XML is read. The
# name to open it by is that of the library that was found. Tests link LibXml2::LibXml2 itself.
#
# corvel_boost_regex: Boost.Regex needs no library of its own from 1.76 on; with an older Boost the
# shared library is linked.
find_package(LibXml2 REQUIRED)
execute_process(
  COMMAND "${CMAKE_READELF}" --dynamic --wide "${LIBXML2_LIBRARY}"
  OUTPUT_VARIABLE corvel_libxml2_dynamic
  ERROR_QUIET)
if(NOT corvel_libxml2_dynamic MATCHES "SONAME[^[]*\\[([^]]+)\\]")
  message(FATAL_ERROR "No shared library with a name to open it by: ${LIBXML2_LIBRARY}")
endif()
add_library(corvel_libxml2_headers INTERFACE)
target_compile_definitions(corvel_libxml2_headers
                           INTERFACE "CORVEL_LIBXML2_SONAME=\"${CMAKE_MATCH_1}\"")
target_include_directories(
  corvel_libxml2_headers SYSTEM
  INTERFACE $<TARGET_PROPERTY:LibXml2::LibXml2,INTERFACE_INCLUDE_DIRECTORIES>)

find_package(Boost REQUIRED)

add_library(corvel_boost_regex INTERFACE)
target_link_libraries(corvel_boost_regex INTERFACE Boost::headers)
if(Boost_VERSION VERSION_LESS 1.76)
  find_package(Boost REQUIRED COMPONENTS regex)
  target_link_libraries(corvel_boost_regex INTERFACE Boost::regex)
endif()
