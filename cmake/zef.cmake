# The functions by which the folders say what they build. Sources are found by pattern, so a new file needs no
# edit here; a pattern that finds nothing makes no target, and links name only the targets that exist, so that
# the tree configures at any stage.

add_library(zef_flags INTERFACE)
target_compile_options(zef_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
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
    # Inline functions are each library's own: small ones in loops are not called through a table.
    set_target_properties(${name} PROPERTIES VISIBILITY_INLINES_HIDDEN ON)
    target_link_libraries(${name} PRIVATE zef_flags)
    zef_link(${name} ${arg_LINK})
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
endfunction()
