# What goes where on a Debian system, and the .deb (cpack --config build/release/CPackConfig.cmake -B build).
if(NOT TARGET inkloom)
  return()
endif()
add_dependencies(inkloom data_folder)

set(INKLOOM_INSTALLED_DATA ${CMAKE_INSTALL_DATADIR}/inkloom)
install(TARGETS inkloom RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY ${CMAKE_SOURCE_DIR}/resources/ DESTINATION ${INKLOOM_INSTALLED_DATA} PATTERN icons EXCLUDE)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/help DESTINATION ${INKLOOM_INSTALLED_DATA})
install(FILES ${CMAKE_SOURCE_DIR}/packaging/inkloom.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_SOURCE_DIR}/packaging/inkloom.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${CMAKE_SOURCE_DIR}/resources/icons/inkloom.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
foreach(size 16 32 48 128 256)
  install(FILES ${CMAKE_SOURCE_DIR}/resources/icons/inkloom-${size}.png
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps RENAME inkloom.png)
endforeach()
install(FILES ${CMAKE_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/inkloom)
install(FILES ${CMAKE_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/inkloom RENAME copyright)

# The read-only settings file says where the data folder is; only the prefix of the installation knows that. The program
# looks in /etc whatever the prefix is.
install(CODE "
  set(settings \"\$ENV{DESTDIR}/etc/inkloom/inkloom.ini\")
  message(STATUS \"Installing: \${settings}\")
  file(WRITE \"\${settings}\" \"[Locations]\\nmain dir=\${CMAKE_INSTALL_PREFIX}/${INKLOOM_INSTALLED_DATA}/\\n\")")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME inkloom)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION "Inkloom edits HTML pages as they look: open a page, click into a paragraph, type, save. It keeps
server-side code, encodings and line ends of the file, and is made for sites whose pages are kept by hand.")
set(CPACK_PACKAGE_CONTACT "The Inkloom developers <inkloom@localhost>")
set(CPACK_PACKAGE_VENDOR Inkloom)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_SET_DESTDIR ON) # the settings file lies outside the prefix
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION web)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "breeze-icon-theme, libqt6svg6, qt6-image-formats-plugins") # loaded at run time
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_SOURCE_DIR}/packaging/conffiles)
include(CPack)
