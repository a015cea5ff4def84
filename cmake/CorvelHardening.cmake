# corvel_hardening: what distributions compile and link their programs with, for the optimised builds
# of what we install. It is linked privately: nothing of it reaches the programs and plug-ins that are
# built against the library.
#
#   stack protector, stack clash protection   a stack that was overrun ends the process
#   _FORTIFY_SOURCE                           so does a call of the C library beyond a buffer's end
#   control flow protection                   indirect jumps land only where one may be expected
#   full RELRO (relro, now)                   tables of addresses are bound at start and read-only then
#   no executable stack, position-independent programs
#
# Builds without optimisation have none of it (_FORTIFY_SOURCE needs it), nor have builds under
# sanitizers, which see more.
option(CORVEL_HARDENING "Compile and link with the hardening that distributions use" ON)

include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

add_library(corvel_hardening INTERFACE)
if(CORVEL_HARDENING AND NOT CORVEL_SANITIZE)
  set(optimised "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
  foreach(flag IN ITEMS -fstack-protector-strong -fstack-clash-protection -fcf-protection)
    # What a processor or a compiler has no use for is left out.
    string(MAKE_C_IDENTIFIER "CORVEL_HAS${flag}" known)
    check_cxx_compiler_flag("-Werror ${flag}" ${known})
    if(${known})
      target_compile_options(corvel_hardening INTERFACE "$<${optimised}:${flag}>")
    endif()
  endforeach()
  # Some distributions' compilers define it themselves.
  target_compile_options(corvel_hardening INTERFACE "$<${optimised}:-U_FORTIFY_SOURCE>"
                                                    "$<${optimised}:-D_FORTIFY_SOURCE=2>")
  target_link_options(corvel_hardening INTERFACE "$<${optimised}:LINKER:-z,relro,-z,now,-z,noexecstack>")
endif()
