# SPDX-License-Identifier: BSD-2-Clause
#
# Installs the two libraries, their modules, the public headers, and the files with which CMake and
# pkg-config find them.

include(CMakePackageConfigHelpers)

install(TARGETS nkdraw nkdraw_host EXPORT nkdrawTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})

install(TARGETS nkdraw_clip_io nkdraw_captions EXPORT nkdrawTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/nkdraw)

foreach(header IN LISTS NKDRAW_PUBLIC_HEADERS)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder})
endforeach()

get_target_property(nkdraw_type nkdraw TYPE)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/nkdraw)
install(EXPORT nkdrawTargets NAMESPACE nkdraw:: DESTINATION ${package_dir})
configure_package_config_file(cmake/nkdrawConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/nkdrawConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/nkdrawConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/nkdrawConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/nkdrawConfigVersion.cmake
  cmake/NkdrawModules.cmake
  DESTINATION ${package_dir})

# Relative to the file itself, so that the installed tree can be moved.
file(RELATIVE_PATH prefix_from_pc
  /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/nkdraw.pc.in ${CMAKE_CURRENT_BINARY_DIR}/nkdraw.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/nkdraw.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
