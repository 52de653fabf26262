# How a folder under src becomes a target, and how a test is found.

# Flags that every target of ours shares.
add_library(pw_flags INTERFACE)
target_compile_options(pw_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor)
target_compile_definitions(pw_flags INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_FOREACH
    QT_NO_KEYWORDS # glib has a field named "signals"
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(PW_WARNINGS_AS_ERRORS)
    target_compile_options(pw_flags INTERFACE -Werror)
endif()
if(PW_SANITIZE)
    target_compile_options(pw_flags INTERFACE -fsanitize=${PW_SANITIZE} -fno-omit-frame-pointer)
    target_link_options(pw_flags INTERFACE -fsanitize=${PW_SANITIZE})
    if(PW_SANITIZE MATCHES "undefined")
        target_compile_options(pw_flags INTERFACE -fno-sanitize-recover=undefined)
    endif()
endif()

# Every header compiles alone: one source a header, built by "./dev lint" only.
add_custom_target(headercheck)

# pw_library(<folder> LINKS <targets> [PRIVATE_LINKS <targets>])
# One static library from all sources of the folder. A folder's headers are reachable only as "<folder>/x.h"
# and only for targets that link it (or link what links it), so an include against the order does not build.
function(pw_library folder)
    cmake_parse_arguments(arg "" "" "LINKS;PRIVATE_LINKS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
    add_library(${folder} STATIC ${sources} ${headers})

    set(root ${CMAKE_BINARY_DIR}/include/${folder})
    file(MAKE_DIRECTORY ${root})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${folder} SYMBOLIC)
    target_include_directories(${folder} PUBLIC ${root})
    target_link_libraries(${folder} PUBLIC ${arg_LINKS} PRIVATE pw_flags ${arg_PRIVATE_LINKS})

    set(checks)
    foreach(header ${headers})
        get_filename_component(name ${header} NAME)
        set(check ${CMAKE_BINARY_DIR}/headercheck/${folder}/${name}.cpp)
        file(CONFIGURE OUTPUT ${check} CONTENT "#include \"${folder}/${name}\"\n")
        list(APPEND checks ${check})
    endforeach()
    if(checks)
        add_library(${folder}_headercheck OBJECT EXCLUDE_FROM_ALL ${checks})
        set_target_properties(${folder}_headercheck PROPERTIES AUTOMOC OFF)
        target_link_libraries(${folder}_headercheck PRIVATE ${folder} pw_flags)
        add_dependencies(headercheck ${folder}_headercheck)
    endif()
endfunction()

# pw_tests(<folder> [LINKS <targets>])
# One executable for each tests/<folder>/tst_*.cpp, run offscreen. LINKS defaults to the folder's own target.
# The folder is the tests' label too.
function(pw_tests folder)
    cmake_parse_arguments(arg "" "" "LINKS" ${ARGN})
    if(NOT arg_LINKS)
        set(arg_LINKS ${folder})
    endif()
    set(leaks "print_suppressions=0:suppressions=${CMAKE_CURRENT_SOURCE_DIR}/leaks.txt")
    file(GLOB tests CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/tst_*.cpp)
    foreach(test ${tests})
        get_filename_component(name ${test} NAME_WE)
        add_executable(${name} ${test})
        set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
        target_link_libraries(${name} PRIVATE pw_flags ${arg_LINKS} support Qt6::Test)
        target_compile_definitions(${name} PRIVATE PW_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data")
        add_test(NAME ${folder}/${name} COMMAND ${name})
        set_tests_properties(${folder}/${name} PROPERTIES
            LABELS ${folder} TIMEOUT 900
            ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QT_FORCE_STDERR_LOGGING=1;LSAN_OPTIONS=${leaks}")
    endforeach()
endfunction()

# pw_tool(<name> <source> LINKS <targets>): a small program of the build that is not installed.
function(pw_tool name source)
    cmake_parse_arguments(arg "" "" "LINKS" ${ARGN})
    add_executable(${name} ${source})
    target_link_libraries(${name} PRIVATE pw_flags ${arg_LINKS})
endfunction()

# pw_bench(<name> LINKS <targets>): bench/<name>.cpp, a measuring program that "./dev bench <name>" runs.
function(pw_bench name)
    pw_tool(bench_${name} ${name}.cpp ${ARGN})
    set_target_properties(bench_${name} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench OUTPUT_NAME ${name})
endfunction()

# pw_fuzzer(<name> LINKS <targets>): tests/fuzz/<name>.cpp with libFuzzer's main.
function(pw_fuzzer name)
    cmake_parse_arguments(arg "" "" "LINKS" ${ARGN})
    add_executable(${name} ${CMAKE_CURRENT_SOURCE_DIR}/${name}.cpp)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz)
    target_link_libraries(${name} PRIVATE pw_flags ${arg_LINKS})
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
endfunction()
