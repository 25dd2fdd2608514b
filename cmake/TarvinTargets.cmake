# How every target of the project is built. A folder is one library; a file named *Posix.cpp or *Windows.cpp belongs to
# that system alone.

add_library(tarvin-options INTERFACE)
if(TARVIN_WARNINGS)
    target_compile_options(tarvin-options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Werror
        # A parameter of a constructor is named like the member that it sets.
        $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local> $<$<CXX_COMPILER_ID:Clang>:-Wshadow> $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>)
else()
    target_compile_options(tarvin-options INTERFACE -w)
endif()
# GCC 12 takes "literal" + string for overlapping copies.
target_compile_options(tarvin-options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
target_include_directories(tarvin-options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_link_libraries(tarvin-options INTERFACE Threads::Threads)
if(WIN32)
    target_compile_definitions(tarvin-options INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
    target_compile_options(tarvin-options INTERFACE -ffunction-sections -fdata-sections)
    target_link_options(tarvin-options INTERFACE -static -s -Wl,--gc-sections)
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

# tarvin_precompile(TARGET HEADER): precompiles a header of cmake/precompiled/ for the target.
function(tarvin_precompile target header)
    if(TARVIN_PRECOMPILED_HEADERS)
        target_precompile_headers(${target} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/precompiled/${header}.h)
    endif()
endfunction()

# tarvin_library(NAME [EXCLUDE FILE...] [DEPENDS LIBRARY...]): the static library of the current folder.
function(tarvin_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "EXCLUDE;DEPENDS")
    tarvin_sources(sources EXCLUDE ${arg_EXCLUDE})
    add_library(${name} STATIC ${sources})
    target_link_libraries(${name} PUBLIC ${arg_DEPENDS} PRIVATE tarvin-options)
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    if(NOT name STREQUAL ui)
        tarvin_precompile(${name} Standard)
    endif()
endfunction()

# What Windows shows of a program and lets it do. Nothing elsewhere.
function(tarvin_resources program description isWindow furtherFile)
    if(NOT WIN32)
        return()
    endif()
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/resources)
    set(manifest ${folder}/${program}.manifest)
    string(REPLACE "." "," versionNumbers ${PROJECT_VERSION})
    set(further "")
    if(isWindow)
        set(further "\n// The cursors and pictures of wxWidgets.\n#define wxUSE_NO_MANIFEST 1\n#include <wx/msw/wx.rc>")
    endif()
    if(furtherFile)
        string(APPEND further "\n#include \"${furtherFile}\"")
    endif()
    configure_file(${CMAKE_SOURCE_DIR}/packaging/windows/program.manifest.in ${manifest} @ONLY)
    configure_file(${CMAKE_SOURCE_DIR}/packaging/windows/program.rc.in ${folder}/${program}.rc @ONLY)
    target_sources(${program} PRIVATE ${folder}/${program}.rc)
    set_source_files_properties(${folder}/${program}.rc PROPERTIES
        OBJECT_DEPENDS "${manifest};${CMAKE_SOURCE_DIR}/packaging/icons/tarvindl.ico;${furtherFile}")
endfunction()

# tarvin_program(NAME [WINDOW] DESCRIPTION TEXT [RESOURCES FILE] SOURCES FILE... DEPENDS LIBRARY...). The description is
# what Windows shows of the program. WINDOW: it has one, and no console. RESOURCES: further ones for Windows.
# The global property TARVIN_PROGRAMS lists all of them.
function(tarvin_program name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "WINDOW" "DESCRIPTION;RESOURCES" "SOURCES;DEPENDS")
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_DEPENDS} tarvin-options)
    set_target_properties(${name} PROPERTIES WIN32_EXECUTABLE ${arg_WINDOW})
    set_property(GLOBAL APPEND PROPERTY TARVIN_PROGRAMS ${name})
    tarvin_resources(${name} "${arg_DESCRIPTION}" ${arg_WINDOW} "${arg_RESOURCES}")
endfunction()

# tarvin_test(NAME DEPENDS LIBRARY... [LAUNCHER SCRIPT]): the test program of the current folder; CTest lists each of its
# cases, and runs it through the script.
function(tarvin_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "LAUNCHER" "DEPENDS")
    tarvin_sources(sources)
    foreach(source IN LISTS sources)
        file(STRINGS ${source} parted REGEX "TEST_CASE.*\".*;.*\"")
        if(parted)
            message(FATAL_ERROR "${source}: a semicolon parts the name of a case in two, and neither runs: ${parted}")
        endif()
    endforeach()
    add_executable(${name}-tests ${sources})
    target_link_libraries(${name}-tests PRIVATE ${arg_DEPENDS} test-harness tarvin-options)
    tarvin_precompile(${name}-tests Test)
    if(CMAKE_CROSSCOMPILING)
        # One entry for all of its cases: asking each program for them would start it once for each.
        add_test(NAME "${name}: all cases" COMMAND ${name}-tests)
        set_tests_properties("${name}: all cases" PROPERTIES TIMEOUT 120)
    else()
        set_target_properties(${name}-tests PROPERTIES CROSSCOMPILING_EMULATOR "${arg_LAUNCHER}")
        doctest_discover_tests(${name}-tests TEST_PREFIX "${name}: " PROPERTIES TIMEOUT 120)
    endif()
endfunction()
