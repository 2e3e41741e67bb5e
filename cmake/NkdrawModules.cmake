# SPDX-License-Identifier: BSD-2-Clause
#
# The modules that nkdraw loads when they are first needed: nkdraw::captions, and
# nkdraw::media_reader, which reads watermarks. It looks for them beside its shared library, where
# they are built and installed, or beside the program that it is linked into.

# Builds both modules before `target`, a program or shared library that links nkdraw::nkdraw. If
# nkdraw is static, also copies them beside `target`. Call it in the folder that creates `target`.
function(nkdraw_copy_modules target)
  set(files "")
  foreach(module IN ITEMS nkdraw::captions nkdraw::media_reader)
    get_target_property(built_elsewhere ${module} IMPORTED)
    if(NOT built_elsewhere)
      add_dependencies(${target} ${module})
    endif()
    list(APPEND files $<TARGET_FILE:${module}>)
  endforeach()
  get_target_property(type nkdraw::host TYPE)
  if(type STREQUAL STATIC_LIBRARY)
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${files})
    add_custom_command(TARGET ${target} POST_BUILD VERBATIM
      COMMAND ${CMAKE_COMMAND} -E copy_if_different ${files} $<TARGET_FILE_DIR:${target}>)
  endif()
endfunction()
