# SPDX-License-Identifier: MIT
# The options that every target of ours is built with, and the one way to make a library of a folder.

add_library(talvera_options INTERFACE)
target_compile_options(talvera_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wunused
    -Wnull-dereference -Wimplicit-fallthrough -Werror)
target_compile_definitions(talvera_options INTERFACE QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII QT_NO_FOREACH)
target_include_directories(talvera_options INTERFACE ${PROJECT_SOURCE_DIR}/src)

if(TALVERA_SANITIZE)
    add_compile_options(-fsanitize=${TALVERA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${TALVERA_SANITIZE})
    # gcc 12 reports null dereferences inside library headers once the sanitizers' checks stand between the lines.
    target_compile_options(talvera_options INTERFACE -Wno-null-dereference -Wno-maybe-uninitialized)
endif()

# talvera_library(NAME SOURCES ... LINK ...): one static library per folder of src/.
function(talvera_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC Qt6::Core ${ARG_LINK} PRIVATE talvera_options)
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
endfunction()
