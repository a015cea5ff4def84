# The libraries that the product calls.
#
# corvel_boost_regex: Boost.Regex needs no library of its own from 1.76 on; with an older Boost the
# shared library is linked.
find_package(LibXml2 REQUIRED)
find_package(Boost REQUIRED)

add_library(corvel_boost_regex INTERFACE)
target_link_libraries(corvel_boost_regex INTERFACE Boost::headers)
if(Boost_VERSION VERSION_LESS 1.76)
  find_package(Boost REQUIRED COMPONENTS regex)
  target_link_libraries(corvel_boost_regex INTERFACE Boost::regex)
endif()
