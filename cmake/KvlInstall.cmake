# What `cmake --install` puts where. Everything is found from where it stands, so that the tree may be moved as a whole.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(packageDir ${CMAKE_INSTALL_LIBDIR}/cmake/kvl)
set(docDir ${CMAKE_INSTALL_DATAROOTDIR}/doc/kvlrun)
set(packaging ${PROJECT_SOURCE_DIR}/packaging)

# The program looks for its standard script beside its own file, links resolved. So the two live in a directory of their
# own, and what stands among the commands is a link. The input file of the standard script comes read-only: the program
# then makes its copy in a private directory, for the superuser too, and never writes among installed files.
set(programDir ${CMAKE_INSTALL_LIBEXECDIR}/kvlRun)
install(TARGETS kvlRun EXPORT kvlTargets RUNTIME DESTINATION ${programDir})
install(DIRECTORY standard/_1 DESTINATION ${programDir})
install(FILES ${packaging}/_1_input.txt DESTINATION ${programDir}/_1 PERMISSIONS OWNER_READ GROUP_READ WORLD_READ)
file(RELATIVE_PATH program /${CMAKE_INSTALL_BINDIR} /${programDir}/kvlRun)
file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/link)
file(CREATE_LINK ${program} ${CMAKE_CURRENT_BINARY_DIR}/link/kvlRun SYMBOLIC)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/link/kvlRun DESTINATION ${CMAKE_INSTALL_BINDIR})

# find_package(kvl)
configure_package_config_file(cmake/package/kvlConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/kvlConfig.cmake
                              INSTALL_DESTINATION ${packageDir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/kvlConfigVersion.cmake COMPATIBILITY SameMajorVersion
                                 ARCH_INDEPENDENT)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/kvlConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/kvlConfigVersion.cmake
              cmake/package/KvlGenerate.cmake cmake/package/KvlRunScript.cmake
        DESTINATION ${packageDir})
install(EXPORT kvlTargets NAMESPACE kvl:: DESTINATION ${packageDir})

# For reading.
install(FILES docs/man/kvlRun.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES README.md CHANGELOG.md DESTINATION ${docDir})
install(FILES LICENSE DESTINATION ${docDir} RENAME copyright)
install(DIRECTORY docs/ DESTINATION ${docDir}
        FILES_MATCHING PATTERN "*.md" PATTERN "man" EXCLUDE PATTERN "architecture.md" EXCLUDE)
install(DIRECTORY examples DESTINATION ${docDir}
        PATTERN "expected" EXCLUDE PATTERN "out" EXCLUDE PATTERN "run.txt" EXCLUDE PATTERN "spread" EXCLUDE)
install(PROGRAMS examples/many_inputs/spread DESTINATION ${docDir}/examples/many_inputs)

# Editors: Vim finds its files by itself; the extension for VS Code is packaged from the sources (see its README.md).
install(DIRECTORY editors/vim/ DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/vim/vimfiles FILES_MATCHING
        PATTERN "*.vim" PATTERN "test" EXCLUDE)
install(DIRECTORY editors/vscode DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/kvlRun
        PATTERN "test" EXCLUDE PATTERN "node_modules" EXCLUDE)

# Desktops: a double click on a main script runs it in a terminal window.
install(FILES ${packaging}/kvlRun.desktop DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/applications)
install(FILES ${packaging}/kvlRun.xml DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/mime/packages)
install(FILES ${packaging}/kvlRun.svg DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/icons/hicolor/scalable/apps)
