# What is installed where, and the packages made of it: the Linux tree with its Debian package, and the Mac's bundle.
if(NOT DRAVIK_QT)
  return()
endif()

set(packaging ${PROJECT_SOURCE_DIR}/packaging)
set(packaged ${PROJECT_BINARY_DIR}/packaging)
file(MAKE_DIRECTORY ${packaged})
set(pictures ${PROJECT_SOURCE_DIR}/resources/logo64x64.pct ${PROJECT_SOURCE_DIR}/resources/paypal.gif)
set(icon_sizes 16 22 24 32 48 64 128 256 512)

if(APPLE)
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  set(icon ${packaged}/dravik.icns)
  list(TRANSFORM icon_sizes REPLACE "(.+)" "${packaging}/icons/dravik-\\1.png" OUTPUT_VARIABLE icons)
  add_custom_command(
    OUTPUT ${icon}
    COMMAND Python3::Interpreter ${packaging}/pack_icns.py ${icon} ${icons}
    DEPENDS ${packaging}/pack_icns.py ${icons}
    VERBATIM)
  add_custom_target(icon DEPENDS ${icon})
  add_dependencies(dravik icon)

  target_sources(dravik PRIVATE ${pictures} ${icon})
  set_source_files_properties(${icon} TARGET_DIRECTORY dravik PROPERTIES GENERATED ON)
  set_source_files_properties(${pictures} ${icon} TARGET_DIRECTORY dravik
    PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
  set_target_properties(dravik PROPERTIES
    OUTPUT_NAME Dravik
    MACOSX_BUNDLE ON
    MACOSX_BUNDLE_INFO_PLIST ${packaging}/Info.plist.in)
  install(TARGETS dravik BUNDLE DESTINATION .)

  # In the build folder the program has the same name on every platform.
  file(CREATE_LINK Dravik.app/Contents/MacOS/Dravik ${PROJECT_BINARY_DIR}/dravik SYMBOLIC)
  return()
endif()

install(TARGETS dravik)
install(FILES ${pictures} DESTINATION ${CMAKE_INSTALL_DATADIR}/dravik)
if(TARGET linux_diskutil)
  install(TARGETS linux_diskutil DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/dravik)
endif()

install(FILES ${packaging}/dravik.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${packaging}/example.dravik.dravik.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
foreach(size IN LISTS icon_sizes)
  configure_file(${packaging}/icons/dravik-${size}.png
    ${PROJECT_BINARY_DIR}/share/icons/hicolor/${size}x${size}/apps/dravik.png COPYONLY)
  install(FILES ${packaging}/icons/dravik-${size}.png
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps
    RENAME dravik.png)
endforeach()

# Debian wants pages and changelog packed; -n leaves the time out, so that the same source gives the same file.
find_program(GZIP gzip REQUIRED)
set(packed)
foreach(file dravik.1 dravik-diskutil.1 debian-changelog)
  add_custom_command(
    OUTPUT ${packaged}/${file}.gz
    COMMAND ${GZIP} -9nc ${packaging}/${file} > ${packaged}/${file}.gz
    DEPENDS ${packaging}/${file}
    VERBATIM)
  list(APPEND packed ${packaged}/${file}.gz)
endforeach()
add_custom_target(packed_documents ALL DEPENDS ${packed})
install(FILES ${packaged}/dravik.1.gz ${packaged}/dravik-diskutil.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${packaged}/debian-changelog.gz DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME changelog.Debian.gz)
install(FILES ${packaging}/debian-copyright DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)

set(CPACK_GENERATOR DEB)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_CONTACT "The Dravik team <contact@dravik.example>")
set(CPACK_PACKAGE_DESCRIPTION
"Dravik puts a window in front of the disk tool diskutil. It lists the Mac
partitions (HFS, HFS+) of the machine's disks, shows which of them are
mounted, and mounts or unmounts the selected one.

The package brings a diskutil for Linux, which mounts through UDisks2.")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://www.dravik.example/)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What dpkg-shlibdeps does not see: a library that the Linux tool loads itself, and Qt's plugin for X, which
# Ubuntu 22.04 has in a package of its own.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libsystemd0, libqt6gui6 (>= 6.4) | libqt6gui6t64 | qt6-qpa-plugins")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "udisks2, xdg-utils, hicolor-icon-theme")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS qt6-wayland)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
configure_file(${CMAKE_CURRENT_LIST_DIR}/BeforePackaging.cmake.in ${PROJECT_BINARY_DIR}/BeforePackaging.cmake @ONLY)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_BINARY_DIR}/BeforePackaging.cmake)
include(CPack)
