# How every target is compiled and linked.

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

# With paths taken relative to the source tree, one clone finds what another has compiled.
find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        add_compile_options(-fpch-preprocess) # what ccache needs to see through precompiled headers
    endif()
endif()

if(NOT APPLE)
    add_link_options(-Wl,--as-needed) # a program loads only the libraries that it calls
    find_program(MOLD mold)
    if(MOLD)
        add_link_options(-fuse-ld=mold)
    endif()
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    add_compile_options(-Wno-restrict) # false alarms in std::string's operator+ when optimising (GCC bug 105651)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
    # GCC 12's own stable_sort calls what the standard has deprecated. Of Qt, QT_DISABLE_DEPRECATED_BEFORE takes care.
    add_compile_options(-Wno-deprecated-declarations)
endif()
if(BRELLIN_WARNINGS_AS_ERRORS)
    add_compile_options(-Werror)
endif()

# Text is made from bytes only where the code says so.
add_compile_definitions(
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
    QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_DISABLE_DEPRECATED_BEFORE=0x060400)

# The standard library checks its callers wherever we look for faults.
add_compile_definitions($<$<OR:$<CONFIG:Debug>,$<BOOL:${BRELLIN_SANITIZE}>>:_GLIBCXX_ASSERTIONS>)
if(BRELLIN_SANITIZE)
    set(BRELLIN_SANITIZERS address,undefined)
    if(BRELLIN_SANITIZE STREQUAL "thread")
        set(BRELLIN_SANITIZERS thread) # the two shadow the memory each in its own way
    endif()
    add_compile_options(-fsanitize=${BRELLIN_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${BRELLIN_SANITIZERS})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # With the sanitizers' code in between, GCC 12 no longer sees that an empty std::optional holds nothing.
        add_compile_options(-Wno-maybe-uninitialized)
        if(BRELLIN_SANITIZE STREQUAL "thread")
            add_compile_options(-Wno-array-bounds -Wno-stringop-overflow) # nor how long the sum of two strings is
        endif()
    endif()
endif()
if(BRELLIN_COVERAGE)
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()
