# SPDX-License-Identifier: BSD-2-Clause
#
# How every target of this project is compiled.

find_package(Threads REQUIRED)

# Bits matter: the compiler may not fuse a multiplication with an addition anywhere.
set(nkdraw_compile_options
    -ffp-contract=off
    -Wall -Wextra -Wpedantic -Wshadow=local -Wconversion -Wsign-conversion
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Wold-style-cast -Wuseless-cast>)
# The sanitizers' own code draws false warnings from the compiler.
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

# Adds one of the two libraries, with its version, its include path and its exported name.
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
    SOVERSION ${PROJECT_VERSION_MAJOR})
endfunction()
