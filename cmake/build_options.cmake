# Every target of ours links corvane_build_options: one language level, one set of warnings.
# The presets turn warnings into errors; a distributor's plain build doesn't.

# Parsing Qt's headers takes most of the time in which a test is compiled; the tests' libraries compile
# them once for all. Every file still includes what it uses, and script/lint reads it so.
# A compiler cache would keep nothing that precompiled headers went into.
if(CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_DISABLE_PRECOMPILE_HEADERS ON)
endif()

option(CORVANE_SANITIZE "Build with the address and undefined behaviour sanitizers" OFF)
option(CORVANE_FUZZ "Build our own parsers for clang's libFuzzer, with the sanitizers" OFF)

add_library(corvane_build_options INTERFACE)
target_compile_features(corvane_build_options INTERFACE cxx_std_20)
target_compile_options(corvane_build_options INTERFACE
    -Wall -Wextra -Wpedantic
    -Wshadow              # a hidden member or parameter reads like the other one
    -Wconversion          # a narrowing that is meant is written as a cast
    -Wsign-conversion
    -Wold-style-cast
    -Wnon-virtual-dtor
    -Woverloaded-virtual
    -Wnull-dereference
    -Wdouble-promotion
    -Wformat=2
    -Wimplicit-fallthrough
    -Wundef
    # GCC 12 at -O3 takes the sum of a literal and a temporary string for an overlapping copy.
    $<$<AND:$<CONFIG:Release>,$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>)

if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # Files of 2 GiB and more, and limits to match.
    target_compile_definitions(corvane_build_options INTERFACE _FILE_OFFSET_BITS=64)
endif()

if(CORVANE_SANITIZE)
    # GCC has a macro that says it, clang has none.
    target_compile_definitions(corvane_build_options INTERFACE CORVANE_SANITIZE)
    target_compile_options(corvane_build_options INTERFACE
        -fsanitize=address,undefined
        -fno-sanitize-recover=all   # an undefined behaviour ends the test, not just a line of log
        -fno-omit-frame-pointer)
    target_link_options(corvane_build_options INTERFACE -fsanitize=address,undefined)
endif()

if(CORVANE_FUZZ)
    target_compile_options(corvane_build_options INTERFACE
        -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    target_link_options(corvane_build_options INTERFACE -fsanitize=address,undefined)
endif()

# For everything that uses Qt.
add_library(corvane_qt_options INTERFACE)
target_link_libraries(corvane_qt_options INTERFACE corvane_build_options)
target_compile_definitions(corvane_qt_options INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    # Nothing that is deprecated in a later Qt than the one at hand, either.
    QT_DISABLE_DEPRECATED_BEFORE=0x060F00)
