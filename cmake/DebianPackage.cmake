# What "cmake --install" and the Debian package of bns hold. CPack makes the package; the same sources give the same
# bytes if SOURCE_DATE_EPOCH is set.
set(package snipstore-bns)
set(made ${PROJECT_BINARY_DIR}/package)
set(sources ${PROJECT_SOURCE_DIR}/resources/package/debian)
file(STRINGS ${PROJECT_SOURCE_DIR}/LICENSE license_lines)
foreach(line IN LISTS license_lines)
  string(APPEND LICENSE_LINES " ${line}\n")
endforeach()
configure_file(${sources}/changelog.in ${made}/changelog @ONLY)
configure_file(${sources}/copyright.in ${made}/copyright @ONLY)
add_custom_command(
  OUTPUT ${made}/bns.1.gz ${made}/bns.bash ${made}/changelog.gz
  COMMAND bns manual > ${made}/bns.1
  COMMAND bns completion bash > ${made}/bns.bash
  COMMAND gzip -9nf ${made}/bns.1
  COMMAND gzip -9nfk ${made}/changelog
  DEPENDS bns ${made}/changelog
  VERBATIM)
add_custom_target(package_files DEPENDS ${made}/bns.1.gz ${made}/bns.bash ${made}/changelog.gz)

set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
install(TARGETS bns DESTINATION bin)
install(FILES ${made}/bns.1.gz DESTINATION share/man/man1)
install(FILES ${made}/bns.bash DESTINATION share/bash-completion/completions RENAME bns)
install(FILES ${sources}/snipstore-bns.xml DESTINATION share/mime/packages)
install(FILES ${PROJECT_SOURCE_DIR}/resources/pictures/app-icon-256.svg
  DESTINATION share/icons/hicolor/scalable/mimetypes RENAME application-x-snipstore-library.svg)
install(FILES ${made}/copyright ${made}/changelog.gz ${PROJECT_SOURCE_DIR}/docs/bns.md
  ${PROJECT_SOURCE_DIR}/docs/team.md DESTINATION share/doc/${package})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ${package})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The Snipstore developers <developers@snipstore.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "search, change and merge Snipstore's code libraries")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
  "bns lists, searches, checks and changes the libraries of Brennic Snipstore, a\nlibrary manager for snippets of Visual Basic code. It exchanges snippets with\nother editors, and lets git merge and compare libraries by snippets.")
include(CPack)
