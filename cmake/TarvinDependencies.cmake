# The libraries that the programs stand on. For Windows they are linked in; expat, SQLite and wxWidgets come from
# packaging/windows/build-libraries.

set(ZLIB_USE_STATIC_LIBS ${WIN32})
find_package(Threads REQUIRED)
find_package(ZLIB REQUIRED)
find_package(EXPAT REQUIRED)
find_package(SQLite3 REQUIRED)
if(WIN32)
    set_property(TARGET EXPAT::EXPAT APPEND PROPERTY INTERFACE_COMPILE_DEFINITIONS XML_STATIC)
endif()

if(NOT TARVIN_DESKTOP)
    return()
endif()

# wxWidgets: core, base and html. On Linux GTK too, which it stands on, for what it does not offer.
if(WIN32)
    # The same level as the library's: without its assertions, which would put boxes before a user.
    set(wxWidgets_USE_STATIC ON)
    find_package(wxWidgets 3.2 CONFIG REQUIRED)
    add_library(tarvin-wx INTERFACE)
    target_link_libraries(tarvin-wx INTERFACE wx::html wx::core wx::base)
    target_compile_definitions(tarvin-wx INTERFACE wxDEBUG_LEVEL=0)
else()
    find_package(wxWidgets 3.2 REQUIRED COMPONENTS html core base)
    add_library(tarvin-wx INTERFACE)
    target_include_directories(tarvin-wx SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS})
    target_compile_definitions(tarvin-wx INTERFACE ${wxWidgets_DEFINITIONS})
    target_compile_options(tarvin-wx INTERFACE ${wxWidgets_CXX_FLAGS})
    find_package(PkgConfig REQUIRED)
    pkg_check_modules(GTK REQUIRED IMPORTED_TARGET gtk+-3.0)
    target_link_libraries(tarvin-wx INTERFACE ${wxWidgets_LIBRARIES} PkgConfig::GTK)
endif()
