# The licences of the parts of others: TARVIN_LICENCES is their text, and share/licences.txt in the build folder the file
# that packages install. Each part is a file in packaging/licences: its name, what it does and where, and its licence.

file(GLOB licences CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/packaging/licences/*.txt)
set(names "")
set(texts "")
set(line "------------------------------------------------------------------------")
foreach(licence ${licences})
    set_property(DIRECTORY ${CMAKE_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${licence})
    file(READ ${licence} content)
    string(REGEX MATCH "^[^\n]+" name "${content}")
    string(APPEND names "  ${name}\n")
    string(APPEND texts "\n${line}\n${content}")
endforeach()
set(TARVIN_LICENCES "Parts of others in TarvinDL, with their licences:\n\n${names}${texts}")
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/share/licences.txt CONTENT "@TARVIN_LICENCES@" @ONLY)
