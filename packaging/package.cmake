# The Debian package: cpack -G DEB in the build tree, or script/package, which looks at it, too.
configure_file(copyright.in copyright @ONLY)
configure_file(changelog.in changelog @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/copyright
    DESTINATION share/doc/corvane ${CORVANE_SYSTEM_RULES})
corvane_gzip(${CMAKE_CURRENT_BINARY_DIR}/changelog share/doc/corvane)

set(CPACK_PACKAGE_NAME corvane)
set(CPACK_PACKAGE_CONTACT ${CORVANE_MAINTAINER})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_GENERATOR DEB)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION text)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${CORVANE_HOME_PAGE})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "compress PDF files in batches")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "Drop PDF files on the window, choose an output folder and press the green
button: the smaller copies land in the folder. Images and fonts become smaller,
the rest of a document stays as it is, and every copy is held against its
original. Nothing is overwritten, and a broken or hostile file can harm neither
the batch nor other files.")
# What the programs are linked with finds dpkg-shlibdeps. The platform plug-in for X and those for
# the pictures come with Qt's own libraries.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "ghostscript, poppler-utils")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, xdg-utils")
include(CPack)
