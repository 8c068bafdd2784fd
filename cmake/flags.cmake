# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# What every target of the project is compiled with, as one interface library.
add_library(plotvw_flags INTERFACE)
target_include_directories(plotvw_flags INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_definitions(plotvw_flags INTERFACE QT_NO_FOREACH QT_NO_CAST_FROM_ASCII
                                                  QT_NO_CAST_TO_ASCII)
target_compile_options(plotvw_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                              -Wsign-conversion -Wold-style-cast -Wundef
                                              -Wnon-virtual-dtor -Woverloaded-virtual)
if(PLOTVW_WERROR)
  target_compile_options(plotvw_flags INTERFACE -Werror)
endif()
if(PLOTVW_ASSERTIONS)
  target_compile_definitions(plotvw_flags INTERFACE _GLIBCXX_ASSERTIONS)
endif()
# The sanitizers have checks of their own, which fortified functions of the C library would bypass.
if(PLOTVW_HARDEN AND NOT PLOTVW_SANITIZE AND NOT PLOTVW_TSAN)
  include(${CMAKE_CURRENT_LIST_DIR}/hardening.cmake)
  target_link_libraries(plotvw_flags INTERFACE plotvw_hardening)
endif()
if(PLOTVW_SANITIZE)
  # float-cast-overflow is not part of "undefined" and is what a huge zoom factor would trip.
  set(sanitizers -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all)
  target_compile_options(plotvw_flags INTERFACE ${sanitizers} -fno-omit-frame-pointer)
  target_link_options(plotvw_flags INTERFACE ${sanitizers})
  if(PLOTVW_FUZZ)
    # What guides the fuzzer; its main function is linked with the targets only.
    target_compile_options(plotvw_flags INTERFACE -fsanitize=fuzzer-no-link)
  endif()
endif()
if(PLOTVW_TSAN)
  target_compile_options(plotvw_flags INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(plotvw_flags INTERFACE -fsanitize=thread)
endif()

# plotvw_library(NAME sources... LINKS targets...): one static library per folder, plotvw_NAME, which others link as
# plotvw::NAME.
function(plotvw_library name)
  cmake_parse_arguments(arg "" "" "LINKS" ${ARGN})
  add_library(plotvw_${name} STATIC ${arg_UNPARSED_ARGUMENTS})
  add_library(plotvw::${name} ALIAS plotvw_${name})
  target_link_libraries(plotvw_${name} PUBLIC plotvw_flags ${arg_LINKS})
endfunction()
