# SPDX-License-Identifier: MIT
# What makes a flaw harder to use, in what users get: checked stacks and buffers, addresses that can't be foretold, tables
# that are read-only once the program runs, jumps that arrive only where one is meant to arrive. tools/check/hardening
# looks for it in the programs. Sanitizers have checks of their own, and builds that aren't optimised no need.

if(CMAKE_BUILD_TYPE MATCHES "^Rel|^MinSize" AND NOT TALVERA_SANITIZE)
    include(CheckPIESupported)
    check_pie_supported(LANGUAGES CXX)
    set(CMAKE_POSITION_INDEPENDENT_CODE ON)
    add_compile_options(
        -fstack-protector-strong -fstack-clash-protection -fcf-protection -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2
        -D_GLIBCXX_ASSERTIONS)
    add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endif()
