# What a viewer downloads: the programs, the data tree where it has been made, and the info file.
install(TARGETS morvane morvane-data morvane-record RUNTIME DESTINATION .)
install(FILES "${CMAKE_SOURCE_DIR}/docs/morvane.txt" DESTINATION .)
install(DIRECTORY "${CMAKE_SOURCE_DIR}/data" DESTINATION . OPTIONAL)

set(CPACK_GENERATOR TGZ)
set(CPACK_PACKAGE_NAME "morvane")
set(CPACK_PACKAGE_VENDOR "Morvane")
set(CPACK_PACKAGE_FILE_NAME "morvane-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR}")
include(CPack)
