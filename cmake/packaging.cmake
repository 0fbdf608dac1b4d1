# What a viewer downloads: the programs, the data tree and the info file.
install(TARGETS morvane morvane-data morvane-record mopak RUNTIME DESTINATION .)
install(FILES "${PROJECT_SOURCE_DIR}/docs/morvane.txt" DESTINATION .)
# The tree that lies here, which may hold files of one's own, and what is missing of it made anew.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/data" DESTINATION . OPTIONAL)
install(CODE "execute_process(
  COMMAND \"$<TARGET_FILE:morvane-data>\" \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}\"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)")

set(CPACK_GENERATOR TGZ)
set(CPACK_PACKAGE_NAME "morvane")
set(CPACK_PACKAGE_VENDOR "Morvane")
set(CPACK_PACKAGE_FILE_NAME "morvane-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR}")
include(CPack)
