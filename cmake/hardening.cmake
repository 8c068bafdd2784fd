# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# What makes a mistake in handling memory harder to exploit, as one interface library: the programs read files that come
# by mail. tests/hardening.sh looks for all of it in the built programs.
include(CheckCXXCompilerFlag)

add_library(plotvw_hardening INTERFACE)
# Functions check their frame before they return, and touch each page of a large one.
target_compile_options(plotvw_hardening INTERFACE -fstack-protector-strong -fstack-clash-protection)
# Calls and returns that go astray are stopped by the processor.
check_cxx_compiler_flag(-fcf-protection=full PLOTVW_HAS_CF_PROTECTION)
if(PLOTVW_HAS_CF_PROTECTION)
  target_compile_options(plotvw_hardening INTERFACE -fcf-protection=full)
endif()
# Calls of the C library know the sizes of their buffers; only the optimizer finds them.
target_compile_options(plotvw_hardening INTERFACE $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>)
# Programs are loaded anywhere, and tables of addresses are read-only from the start on.
target_compile_options(plotvw_hardening INTERFACE -fPIC)
target_link_options(plotvw_hardening INTERFACE -Wl,-z,relro,-z,now
                    $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>)
