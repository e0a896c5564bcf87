# SPDX-License-Identifier: MIT
# The options that every target of ours is built with, and the one way to make a library of a folder.

add_library(talvera_options INTERFACE)
target_compile_options(talvera_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wunused
    -Wimplicit-fallthrough -Werror)
target_compile_definitions(talvera_options INTERFACE QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII QT_NO_FOREACH)
target_include_directories(talvera_options INTERFACE ${PROJECT_SOURCE_DIR}/src)

if(TALVERA_SANITIZE)
    add_compile_options(-fsanitize=${TALVERA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${TALVERA_SANITIZE})
    # gcc 12 suspects library headers once the sanitizers' checks stand between the lines.
    target_compile_options(talvera_options INTERFACE -Wno-maybe-uninitialized)
    # Some hundred programs are linked for the tests. What users get is linked as Debian does.
    find_program(TALVERA_MOLD mold)
    if(TALVERA_MOLD)
        add_link_options(-fuse-ld=mold)
    endif()
endif()

# With TALVERA_PRECOMPILE the headers that most files include are compiled once. It halves the time of a whole build and
# hides missing includes, so only the sanitized builds use it.
# -fpch-preprocess: ccache keeps only what names its precompiled header. -pthread: some libraries ask for it, and
# a precompiled header is used only where it is compiled in the same way; elsewhere the headers are read as ever.
set(talvera_precompile_options -fpch-preprocess -pthread)
set(CMAKE_PCH_WARN_INVALID OFF)
function(talvera_precompiled name)
    cmake_parse_arguments(ARG "" "" "HEADERS;LINK" ${ARGN})
    file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/${name}.cpp CONTENT "")
    add_library(${name} OBJECT EXCLUDE_FROM_ALL ${CMAKE_BINARY_DIR}/${name}.cpp)
    target_link_libraries(${name} PRIVATE talvera_options Qt6::Core QCoro6::Core ${ARG_LINK})
    target_compile_options(${name} PRIVATE ${talvera_precompile_options})
    target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

function(talvera_use_precompiled name precompiled)
    if(TALVERA_PRECOMPILE)
        target_compile_options(${name} PRIVATE ${talvera_precompile_options})
        target_precompile_headers(${name} REUSE_FROM ${precompiled})
    endif()
endfunction()

set(talvera_common_headers
    <QByteArray> <QCoro/QCoroTask> <QString> <QStringList>
    <algorithm> <array> <chrono> <cstdint> <functional> <map> <memory> <optional> <string> <utility> <variant> <vector>)
if(TALVERA_PRECOMPILE)
    talvera_precompiled(talvera_precompiled_headers HEADERS ${talvera_common_headers})
endif()

# talvera_library(NAME SOURCES ... LINK ...): one static library per folder of src/.
function(talvera_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC Qt6::Core ${ARG_LINK} PRIVATE talvera_options)
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    talvera_use_precompiled(${name} talvera_precompiled_headers)
endfunction()
