# What every target of the project has in common: language level, warnings, Qt's strict macros, sanitizers.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)
set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g1")

find_program(QUORVIK_CCACHE ccache)
if(QUORVIK_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros
        CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${QUORVIK_CCACHE})
endif()

add_library(quorvik_flags INTERFACE)
# Real-valued formulas are evaluated in the printed order, each step rounded to 64 bits.
target_compile_options(quorvik_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
    -Woverloaded-virtual -ffp-contract=off)
target_link_options(quorvik_flags INTERFACE -Wl,-z,relro,-z,now)
target_compile_definitions(quorvik_flags INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_URL_CAST_FROM_STRING QT_NO_FOREACH
    QUORVIK_VERSION="${PROJECT_VERSION}")
target_include_directories(quorvik_flags INTERFACE ${CMAKE_SOURCE_DIR}/src)
if(QUORVIK_SANITIZE)
    # Undefined behaviour is looked for in the program; in the tests the checks would only double the time to compile them.
    target_compile_options(quorvik_flags INTERFACE -fno-omit-frame-pointer -fsanitize=address
        $<$<NOT:$<BOOL:$<TARGET_PROPERTY:QUORVIK_IS_TEST>>>:-fsanitize=undefined>
        $<$<NOT:$<BOOL:$<TARGET_PROPERTY:QUORVIK_IS_TEST>>>:-fno-sanitize-recover=undefined>)
    target_link_options(quorvik_flags INTERFACE -fsanitize=address,undefined)
endif()
if(QUORVIK_COVERAGE)
    target_compile_options(quorvik_flags INTERFACE --coverage)
    target_link_options(quorvik_flags INTERFACE --coverage)
endif()

if(QUORVIK_FUZZ)
    target_compile_options(quorvik_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

# The headers that nearly all sources include are compiled once for each kind of target: core, widgets, tests, window_tests.
function(quorvik_pch target which)
    if(which MATCHES "tests")
        set_target_properties(${target} PROPERTIES QUORVIK_IS_TEST ON)
    endif()
    if(NOT QUORVIK_PCH)
        return()
    endif()
    set(owner quorvik_pch_${which})
    if(NOT TARGET ${owner})
        set(header_core PchCore.h)
        set(header_widgets PchWidgets.h)
        set(header_tests PchTests.h)
        set(header_window_tests PchWindowTests.h)
        add_library(${owner} OBJECT ${CMAKE_SOURCE_DIR}/cmake/Pch.cpp)
        target_link_libraries(${owner} PRIVATE quorvik_flags Qt6::Core)
        if(which STREQUAL "widgets" OR which STREQUAL "window_tests")
            target_link_libraries(${owner} PRIVATE Qt6::Widgets)
        endif()
        if(which MATCHES "tests")
            set_target_properties(${owner} PROPERTIES QUORVIK_IS_TEST ON)
            target_link_libraries(${owner} PRIVATE GTest::gtest GTest::gmock)
        endif()
        set_target_properties(${owner} PROPERTIES AUTOMOC OFF AUTORCC OFF)
        target_precompile_headers(${owner} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/${header_${which}})
    endif()
    target_precompile_headers(${target} REUSE_FROM ${owner})
endfunction()

# The sources of a target are compiled by eights where QUORVIK_UNITY asks for it, which takes less than half of the
# time. The names of their unnamed namespaces meet then, so they must differ among the eight. Which eight, is settled
# here: by the batches of CMake it would depend on its version.
function(quorvik_unity target sources)
    if(NOT QUORVIK_UNITY)
        return()
    endif()
    list(FILTER sources INCLUDE REGEX "\\.cpp$")
    set(count 0)
    foreach(source IN LISTS sources)
        math(EXPR group "${count} / 8")
        set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${group})
        math(EXPR count "${count} + 1")
    endforeach()
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
endfunction()

# quorvik_engine(<folder> <libraries...>): the static library quorvik_<folder> from all sources of the calling folder.
function(quorvik_engine name)
    file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h)
    quorvik_library(${name} core "${sources}" Qt6::Core ${ARGN})
endfunction()

# quorvik_windows(<name> <libraries...>): the same for a folder that holds windows, with its subfolders.
function(quorvik_windows name)
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS *.cpp *.h *.qrc)
    quorvik_library(${name} widgets "${sources}" Qt6::Widgets ${ARGN})
endfunction()

function(quorvik_library name pch sources)
    add_library(quorvik_${name} STATIC ${sources})
    set_target_properties(quorvik_${name} PROPERTIES LINKER_LANGUAGE CXX)
    target_link_libraries(quorvik_${name} PUBLIC quorvik_flags ${ARGN})
    quorvik_pch(quorvik_${name} ${pch})
    quorvik_unity(quorvik_${name} "${sources}")
endfunction()

# quorvik_reads_older_files(<program>): puts the reader of older files beside a program of another folder than bin.
function(quorvik_reads_older_files program)
    add_dependencies(${program} quorvik-jet)
    add_custom_command(TARGET ${program} POST_BUILD COMMAND ${CMAKE_COMMAND} -E create_symlink
        ${CMAKE_BINARY_DIR}/bin/quorvik-jet $<TARGET_FILE_DIR:${program}>/quorvik-jet VERBATIM)
endfunction()

# quorvik_tests(<name> <libraries...>): the executable <name>_tests from all sources of the calling folder.
function(quorvik_tests name)
    file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h)
    add_executable(${name}_tests ${sources})
    target_link_libraries(${name}_tests PRIVATE quorvik_flags GTest::gtest GTest::gmock Qt6::Test ${ARGN})
    target_include_directories(${name}_tests PRIVATE ${CMAKE_SOURCE_DIR}/tests)
    if("quorvik_window_test_support" IN_LIST ARGN)
        quorvik_pch(${name}_tests window_tests)
    else()
        quorvik_pch(${name}_tests tests)
    endif()
    quorvik_unity(${name}_tests "${sources}")
    quorvik_reads_older_files(${name}_tests)
    gtest_discover_tests(${name}_tests TEST_PREFIX ${name}. DISCOVERY_MODE PRE_TEST
        PROPERTIES TIMEOUT 120
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/support/lsan.supp:print_suppressions=0")
endfunction()
