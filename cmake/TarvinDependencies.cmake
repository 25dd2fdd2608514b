# The libraries that the programs stand on. For Windows they are linked in; expat comes from packaging/windows/build-expat.

set(ZLIB_USE_STATIC_LIBS ${WIN32})
find_package(Threads REQUIRED)
find_package(ZLIB REQUIRED)
find_package(EXPAT REQUIRED)
if(WIN32)
    set_property(TARGET EXPAT::EXPAT APPEND PROPERTY INTERFACE_COMPILE_DEFINITIONS XML_STATIC)
endif()
