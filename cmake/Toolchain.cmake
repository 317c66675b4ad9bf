# Compiler and linker options of all targets.

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

# Paths relative to the source tree let several clones share the cache.
find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        add_compile_options(-fpch-preprocess) # required by ccache for precompiled headers
    endif()
endif()

if(NOT APPLE)
    add_link_options(-Wl,--as-needed) # load only libraries that are used
    find_program(MOLD mold)
    if(MOLD)
        add_link_options(-fuse-ld=mold)
    endif()
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    add_compile_options(-Wno-restrict) # false alarms in optimised std::string operator+ (GCC bug 105651)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
    # GCC 12's stable_sort uses deprecated functions. For Qt there is QT_DISABLE_DEPRECATED_BEFORE.
    add_compile_options(-Wno-deprecated-declarations)
endif()
if(BRELLIN_WARNINGS_AS_ERRORS)
    add_compile_options(-Werror)
endif()

# Require explicit conversions between bytes and text.
add_compile_definitions(
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
    QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_DISABLE_DEPRECATED_BEFORE=0x060400)

# Enable the standard library's assertions in debug and sanitizer builds.
add_compile_definitions($<$<OR:$<CONFIG:Debug>,$<BOOL:${BRELLIN_SANITIZE}>>:_GLIBCXX_ASSERTIONS>)
if(BRELLIN_SANITIZE)
    set(BRELLIN_SANITIZERS address,undefined)
    if(BRELLIN_SANITIZE STREQUAL "thread")
        set(BRELLIN_SANITIZERS thread) # cannot be combined with the address sanitizer
    endif()
    add_compile_options(-fsanitize=${BRELLIN_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${BRELLIN_SANITIZERS})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # False alarms of GCC 12 in sanitizer builds, about empty std::optional …
        add_compile_options(-Wno-maybe-uninitialized)
        if(BRELLIN_SANITIZE STREQUAL "thread")
            add_compile_options(-Wno-array-bounds -Wno-stringop-overflow) # … and about concatenated strings
        endif()
    endif()
endif()
if(BRELLIN_COVERAGE)
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()
