# The connected helper, made of resources/helper (cmake/PackHelper.py): the signed extension, the unpacked one, and what
# programs must know of them. `tabwright_connected_helper` gives "ConnectedHelper.h" to those that link it.

find_program(PYTHON_PROGRAM NAMES python3 REQUIRED)
find_program(OPENSSL_PROGRAM openssl REQUIRED)

set(folder "${CMAKE_BINARY_DIR}/src/app") # beside the programs
set(header "${CMAKE_BINARY_DIR}/generated/ConnectedHelper.h")
file(GLOB files CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/resources/helper/*" "${CMAKE_SOURCE_DIR}/resources/helper/connected/*")
list(REMOVE_ITEM files "${CMAKE_SOURCE_DIR}/resources/helper/connected")
add_custom_command(
  OUTPUT "${folder}/tabwright-helper.crx" "${folder}/helper/manifest.json" "${header}"
  COMMAND "${PYTHON_PROGRAM}" "${CMAKE_SOURCE_DIR}/cmake/PackHelper.py" "${CMAKE_SOURCE_DIR}/resources/helper"
          "${folder}/helper" "${folder}/tabwright-helper.crx" "${header}" tabwright-relay
  DEPENDS ${files} "${CMAKE_SOURCE_DIR}/cmake/PackHelper.py"
  COMMENT "Packing the connected helper"
  VERBATIM)
add_custom_target(connected_helper DEPENDS "${header}")
add_dependencies(generated connected_helper)

add_library(tabwright_connected_helper INTERFACE)
target_include_directories(tabwright_connected_helper INTERFACE "${CMAKE_BINARY_DIR}/generated")
add_dependencies(tabwright_connected_helper connected_helper)

include(GNUInstallDirs)
install(FILES "${folder}/tabwright-helper.crx" DESTINATION "${CMAKE_INSTALL_DATADIR}/tabwright" COMPONENT tabwright)
install(DIRECTORY "${folder}/helper" DESTINATION "${CMAKE_INSTALL_DATADIR}/tabwright" COMPONENT tabwright)
