# The libraries that the programs stand on. For Windows they are linked in; expat and wxWidgets come from
# packaging/windows/build-libraries.

set(ZLIB_USE_STATIC_LIBS ${WIN32})
find_package(Threads REQUIRED)
find_package(ZLIB REQUIRED)
find_package(EXPAT REQUIRED)
if(WIN32)
    set_property(TARGET EXPAT::EXPAT APPEND PROPERTY INTERFACE_COMPILE_DEFINITIONS XML_STATIC)
    # The same level as the library's: without its assertions, which would put boxes before a user.
    set(wxWidgets_USE_STATIC ON)
    find_package(wxWidgets 3.2 CONFIG REQUIRED)
    add_library(tarvin-wx INTERFACE)
    target_link_libraries(tarvin-wx INTERFACE wx::html wx::core wx::base)
    target_compile_definitions(tarvin-wx INTERFACE wxDEBUG_LEVEL=0)
endif()
