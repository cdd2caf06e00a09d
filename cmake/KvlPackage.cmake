# The packages that `cpack` makes of an installed tree: for Debian, and as an archive to be unpacked anywhere.
set(CPACK_GENERATOR DEB TGZ)
set(CPACK_PACKAGE_NAME kvlrun)
set(CPACK_PACKAGE_VENDOR "The kvlRun authors")
set(CPACK_PACKAGE_CONTACT "The kvlRun authors <authors@kvlrun.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "generator of text from structured text")
set(CPACK_PACKAGE_DESCRIPTION
    "kvlRun reads text of any shape by a description of how it is built, and writes
text from templates with placeholders, loops and conditions: code, SQL,
documentation or reports from definitions and data that exist already.")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/finish_tree.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
