# SPDX-License-Identifier: BSD-2-Clause
#
# How every target of this project is compiled.

find_package(Threads REQUIRED)

# Results are exact to the bit: the compiler must never fuse a multiplication with an addition.
set(nkdraw_compile_options
    -ffp-contract=off
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Wold-style-cast>
    $<$<COMPILE_LANG_AND_ID:C,GNU>:-Wshadow=local>
    $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wshadow=local -Wuseless-cast>)
# The sanitizers' own code triggers false compiler warnings.
if(NKDRAW_WARNINGS_AS_ERRORS AND NOT NKDRAW_SANITIZE)
  list(APPEND nkdraw_compile_options -Werror)
endif()

# Gives `target` the language level, the warnings and the sanitizers of the project.
function(nkdraw_target target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_compile_options(${target} PRIVATE ${nkdraw_compile_options})
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  if(NKDRAW_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${NKDRAW_SANITIZE}
                           -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(${target} PRIVATE -fsanitize=${NKDRAW_SANITIZE})
  endif()
endfunction()

# Adds one of the two libraries, with its version, its include path, its exported name and the
# symbols that its exports.map exports.
function(nkdraw_library target exported)
  add_library(${target} ${ARGN})
  add_library(nkdraw::${exported} ALIAS ${target})
  nkdraw_target(${target})
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${exported}
    POSITION_INDEPENDENT_CODE ON
    INSTALL_RPATH "$ORIGIN"
    VERSION ${PROJECT_VERSION}
    SOVERSION ${NKDRAW_SOVERSION}
    LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/exports.map)
  target_link_options(${target} PRIVATE
    LINKER:--version-script=${CMAKE_CURRENT_SOURCE_DIR}/exports.map)
endfunction()

# Separate objects, using Highway, so that tests can reach what the library hides.
function(nkdraw_objects name)
  add_library(${name} OBJECT ${ARGN})
  nkdraw_target(${name})
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_link_libraries(${name} PUBLIC nkdraw_highway)
endfunction()
