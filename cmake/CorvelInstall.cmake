# What `cmake --install` puts in place: the library with its public headers, the host program, the
# CMake package `corvel` and the pkg-config module `corvel`, all relocatable, the manual page and the
# example descriptors.
include(CMakePackageConfigHelpers)

set(corvel_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/corvel")

install(
  TARGETS corvel
  EXPORT corvelTargets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(TARGETS quorcli RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(FILES "${PROJECT_SOURCE_DIR}/packaging/quorcli.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
install(
  DIRECTORY "${PROJECT_SOURCE_DIR}/examples/host"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/corvel/examples"
  USE_SOURCE_PERMISSIONS)

install(
  EXPORT corvelTargets
  NAMESPACE corvel::
  DESTINATION "${corvel_package_dir}")
configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/packaging/corvelConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/packaging/corvelConfig.cmake"
  INSTALL_DESTINATION "${corvel_package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/packaging/corvelConfigVersion.cmake"
                                 COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/packaging/corvelConfig.cmake"
              "${PROJECT_BINARY_DIR}/packaging/corvelConfigVersion.cmake"
        DESTINATION "${corvel_package_dir}")

file(RELATIVE_PATH corvel_pc_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" corvel_pc_prefix "${corvel_pc_prefix}")
configure_file("${PROJECT_SOURCE_DIR}/packaging/corvel.pc.in"
               "${PROJECT_BINARY_DIR}/packaging/corvel.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/packaging/corvel.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
