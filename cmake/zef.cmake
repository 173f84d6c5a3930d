# The functions by which the folders say what they build. Sources are found by pattern, so a new file needs no
# edit here; a pattern that finds nothing makes no target, and links name only the targets that exist, so that
# the tree configures at any stage.

add_library(zef_flags INTERFACE)
target_compile_options(zef_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Werror
    # Where sources are compiled as one, what stands in an unnamed namespace seems to stand in a header, and a name in a header
    # may be one that a source keeps to itself: GCC says nothing of the second, clang does.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>
    $<$<CXX_COMPILER_ID:GNU>:-Wshadow>
    # A CString handed to printf's like is an error to clang and silent nonsense to GCC without this.
    $<$<CXX_COMPILER_ID:GNU>:-Wconditionally-supported>
    # Nobody replaces our functions from outside, so a shared library may call its own directly.
    -fno-semantic-interposition)
# For quoted includes alone: <sys/file.h> is the system's, "sys/file.h" ours.
target_compile_options(zef_flags INTERFACE "SHELL:-iquote \"${CMAKE_SOURCE_DIR}\"")
if(ZEF_SANITIZE)
    # The check of function types compares addresses of type names, which differ between an application with
    # hidden symbols and the host: it would report calls that are right.
    set(sanitize -fsanitize=${ZEF_SANITIZE} -fno-sanitize=function -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    target_compile_options(zef_flags INTERFACE ${sanitize})
    target_link_options(zef_flags INTERFACE ${sanitize})
    target_compile_definitions(zef_flags INTERFACE _GLIBCXX_ASSERTIONS)
else()
    # A library that leans on a floor above it does not link. (Sanitizers leave symbols to the program.)
    target_link_options(zef_flags INTERFACE -Wl,--no-undefined)
endif()
if(ZEF_FUZZ)
    target_compile_options(zef_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

# What nearly every source includes of the standard library is read once a target, not once a source. Nothing of the
# house is among it: a source that forgets a header of ours does not compile.
set(zef_standard_headers
    <algorithm> <array> <charconv> <cmath> <cstdint> <cstdio> <cstdlib> <cstring> <cwchar> <filesystem> <functional>
    <iterator> <limits> <map> <memory> <numbers> <optional> <set> <span> <string> <string_view> <unordered_map>
    <unordered_set> <utility> <variant> <vector>)
if(CMAKE_CXX_COMPILER_LAUNCHER MATCHES "ccache")
    # So that the cache of compilers sees what a precompiled header was made of.
    target_compile_options(zef_flags INTERFACE $<IF:$<CXX_COMPILER_ID:GNU>,-fpch-preprocess,SHELL:-Xclang -fno-pch-timestamp>)
endif()

# zef_compile_together(TARGET SOURCES): sources that do not disturb each other are compiled as one, at most ZEF_TOGETHER of them:
# quicker as a whole, but a change costs its whole group. The groups are asked for anew when a source changes.
function(zef_compile_together target sources)
    find_package(Python3 COMPONENTS Interpreter)
    if(NOT Python3_FOUND OR ZEF_TOGETHER LESS 2)
        return()
    endif()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${sources} ${CMAKE_SOURCE_DIR}/scripts/source_groups.py)
    execute_process(COMMAND ${Python3_EXECUTABLE} ${CMAKE_SOURCE_DIR}/scripts/source_groups.py
        ${ZEF_TOGETHER} ${CMAKE_BINARY_DIR}/groups/${target} ${sources}
        OUTPUT_VARIABLE groups COMMAND_ERROR_IS_FATAL ANY OUTPUT_STRIP_TRAILING_WHITESPACE)
    string(REPLACE "\n" ";" groups "${groups}")
    foreach(line IN LISTS groups)
        string(REGEX MATCH "^(.*)=([0-9]+)$" line "${line}")
        set_source_files_properties(${CMAKE_MATCH_1} PROPERTIES UNITY_GROUP group_${CMAKE_MATCH_2})
    endforeach()
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
endfunction()

# zef_precompile(TARGET SOURCES): a target of a few sources would only wait for its precompiled header.
function(zef_precompile target sources)
    list(LENGTH sources count)
    if(count GREATER 4)
        target_precompile_headers(${target} PRIVATE ${zef_standard_headers} ${ARGN})
    endif()
endfunction()

# zef_sources(OUT PATTERN...): OUT becomes the files of this folder that match.
function(zef_sources out)
    list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    file(GLOB found CONFIGURE_DEPENDS ${ARGN})
    set(${out} ${found} PARENT_SCOPE)
endfunction()

# zef_link(TARGET LIBRARY...): links those of the libraries that exist, and hands them on to who links TARGET.
function(zef_link target)
    foreach(library IN LISTS ARGN)
        if(TARGET ${library})
            target_link_libraries(${target} PUBLIC ${library})
        endif()
    endforeach()
endfunction()

# zef_library(NAME SOURCES PATTERN... [LINK TARGET...]): a shared library of the house. All its symbols are
# visible: its export macro matters where systems ask for one, and tests look inside.
function(zef_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
    zef_sources(sources ${arg_SOURCES})
    if(NOT sources)
        return()
    endif()
    add_library(${name} SHARED ${sources})
    # Inline functions are each library's own: small ones in loops are not called through a table. Nor does a
    # library look up its own functions by name, which would be a sixth of the program's start.
    set_target_properties(${name} PROPERTIES VISIBILITY_INLINES_HIDDEN ON)
    target_link_options(${name} PRIVATE -Wl,-Bsymbolic-functions)
    target_link_libraries(${name} PRIVATE zef_flags)
    zef_link(${name} ${arg_LINK})
    zef_precompile(${name} "${sources}")
    zef_compile_together(${name} "${sources}")
endfunction()

# zef_application(NAME SOURCES PATTERN... [LINK TARGET...]): an ObjectARX application, NAME.arx. Only what it
# exports is visible; others may link it and the host may load it.
function(zef_application name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
    zef_library(${name} SOURCES ${arg_SOURCES} LINK ${arg_LINK})
    if(TARGET ${name})
        set_target_properties(${name} PROPERTIES PREFIX "" SUFFIX ".arx"
            CXX_VISIBILITY_PRESET hidden)
    endif()
endfunction()

# zef_program(NAME SOURCES PATTERN... [LINK TARGET...]): a program. It is not made until what it links exists.
function(zef_program name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
    zef_sources(sources ${arg_SOURCES})
    if(NOT sources)
        return()
    endif()
    add_executable(${name} ${sources})
    target_link_libraries(${name} PRIVATE zef_flags)
    zef_link(${name} ${arg_LINK})
    zef_precompile(${name} "${sources}")
    zef_compile_together(${name} "${sources}")
endfunction()
