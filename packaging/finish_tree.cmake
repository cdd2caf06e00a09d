# Runs over the tree that goes into a package: what Debian wants besides, and its manual and changes packed.
file(GLOB_RECURSE manual ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/kvlRun.1)
file(GLOB_RECURSE changes ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/CHANGELOG.md)
get_filename_component(doc "${changes}" DIRECTORY)
configure_file(${CMAKE_CURRENT_LIST_DIR}/changelog.in ${doc}/changelog @ONLY)
execute_process(COMMAND gzip -9n ${manual} ${doc}/changelog COMMAND_ERROR_IS_FATAL ANY)
