# How every target of the project is built. A folder is one library; a file named *Posix.cpp or *Windows.cpp belongs to
# that system alone.

add_library(tarvin-options INTERFACE)
target_compile_options(tarvin-options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
# GCC 12 takes "literal" + string for overlapping copies.
target_compile_options(tarvin-options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
target_include_directories(tarvin-options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_link_libraries(tarvin-options INTERFACE Threads::Threads)
if(WIN32)
    target_compile_definitions(tarvin-options INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
    target_link_options(tarvin-options INTERFACE -static)
endif()

# tarvin_sources(VARIABLE [EXCLUDE FILE...]): the sources of the current folder that belong to the target system.
function(tarvin_sources variable)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "EXCLUDE")
    file(GLOB sources CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} *.cpp)
    if(WIN32)
        list(FILTER sources EXCLUDE REGEX "Posix\\.cpp$")
    else()
        list(FILTER sources EXCLUDE REGEX "Windows\\.cpp$")
    endif()
    if(arg_EXCLUDE)
        list(REMOVE_ITEM sources ${arg_EXCLUDE})
    endif()
    set(${variable} ${sources} PARENT_SCOPE)
endfunction()

# tarvin_library(NAME [EXCLUDE FILE...] [DEPENDS LIBRARY...]): the static library of the current folder.
function(tarvin_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "EXCLUDE;DEPENDS")
    tarvin_sources(sources EXCLUDE ${arg_EXCLUDE})
    add_library(${name} STATIC ${sources})
    target_link_libraries(${name} PUBLIC ${arg_DEPENDS} PRIVATE tarvin-options)
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
endfunction()

# tarvin_program(NAME SOURCES FILE... DEPENDS LIBRARY...)
function(tarvin_program name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;DEPENDS")
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_DEPENDS} tarvin-options)
endfunction()

# tarvin_test(NAME DEPENDS LIBRARY... [LAUNCHER SCRIPT]): the test program of the current folder; CTest lists each of its
# cases, and runs it through the script.
function(tarvin_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "LAUNCHER" "DEPENDS")
    tarvin_sources(sources)
    add_executable(${name}-tests ${sources})
    target_link_libraries(${name}-tests PRIVATE ${arg_DEPENDS} test-support tarvin-options)
    if(arg_LAUNCHER)
        set_target_properties(${name}-tests PROPERTIES CROSSCOMPILING_EMULATOR ${arg_LAUNCHER})
    endif()
    if(NOT CMAKE_CROSSCOMPILING)
        doctest_discover_tests(${name}-tests TEST_PREFIX "${name}: " PROPERTIES TIMEOUT 120)
    endif()
endfunction()
