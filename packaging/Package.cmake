# SPDX-FileCopyrightText: the Tavelo authors
# SPDX-License-Identifier: MIT
#
# `cmake --build build/release --target package` makes a Debian package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tavelo)
set(CPACK_PACKAGE_VENDOR "the Tavelo authors")
set(CPACK_PACKAGE_CONTACT "the Tavelo authors <authors@tavelo.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "film browser and player for the Internet Archive")
set(CPACK_PACKAGE_DESCRIPTION
"Shows the public film catalogue of the Internet Archive, each item with its
files and its licence, and plays MP4, M4V and MOV files at once, with
subtitles, audio tracks and exact seeking. Films can be saved, with pause and
resume, and go on where the viewer stopped.
Torrent indexes of the user's choice are searched for metadata only; magnet
links and torrent files are handed to the user's own BitTorrent application.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES TRUE)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What the screens import and whom the services' certificates are from is found at run time, so no
# tool sees it.
string(JOIN ", " CPACK_DEBIAN_PACKAGE_DEPENDS
  ca-certificates
  qml6-module-qtquick qml6-module-qtquick-controls qml6-module-qtquick-dialogs
  qml6-module-qtquick-layouts qml6-module-qtquick-templates qml6-module-qtquick-window
  qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript
  qml6-module-qt-labs-folderlistmodel)
# The plugins ask the desktop which proxy it uses.
string(JOIN ", " CPACK_DEBIAN_PACKAGE_RECOMMENDS
  fonts-inter libgl1-mesa-dri qt6-wayland
  libproxy1-plugin-gsettings libproxy1-plugin-kconfig libproxy1-plugin-networkmanager)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS libproxy1-plugin-webkit) # large; runs a company's proxy script
include(CPack)
