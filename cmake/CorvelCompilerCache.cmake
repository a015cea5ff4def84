# Compiles through ccache where it is installed, unless the caller chose a launcher.
find_program(CORVEL_CCACHE ccache)
mark_as_advanced(CORVEL_CCACHE)
if(CORVEL_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CORVEL_CCACHE}")
endif()
