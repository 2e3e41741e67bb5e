# SPDX-License-Identifier: BSD-2-Clause
#
# The consumer programs, however nkdraw was found.
foreach(source IN ITEMS consumer.c consumer.cpp overlay.cpp)
  string(REPLACE . _ name ${source})
  add_executable(${name} ${CMAKE_CURRENT_LIST_DIR}/${source})
  target_link_libraries(${name} PRIVATE nkdraw::nkdraw)
endforeach()
nkdraw_copy_modules(overlay_cpp)
