# Installation and the Debian package (cpack -G DEB).
#
# The three programs go to <prefix>/lib/sedra-plot with the user guide in help/ beside
# them, where sedra-plot opens it; <prefix>/bin holds links to them.  The desktop entry
# and the icon put the program in the desktop's menu.  An installed sedra-plot keeps its
# settings in the user's configuration folder (see ChooseSettingsFolder), a program run
# from a build keeps them in the working folder.
include(GNUInstallDirs)
set(SEDRA_INSTALL_LIBEXEC lib/sedra-plot)

install(TARGETS sedra-plot sedra-render make-sample-core RUNTIME DESTINATION ${SEDRA_INSTALL_LIBEXEC})
install(DIRECTORY ${CMAKE_SOURCE_DIR}/resources/help/ DESTINATION ${SEDRA_INSTALL_LIBEXEC}/help)
install(FILES ${CMAKE_SOURCE_DIR}/resources/sedra-plot.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_SOURCE_DIR}/resources/icons/sedra-plot.png
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/256x256/apps)
install(FILES ${CMAKE_SOURCE_DIR}/resources/icons/sedra-plot-48.png
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/48x48/apps RENAME sedra-plot.png)

# Relative links, so the tree works wherever it is unpacked (dpkg -x into a scratch root
# as well as /usr).  Made in a staging folder and installed as links.
set(links ${CMAKE_BINARY_DIR}/install-links)
file(MAKE_DIRECTORY ${links}/bin ${links}/doc)
foreach(program sedra-plot sedra-render make-sample-core)
  file(CREATE_LINK ../${SEDRA_INSTALL_LIBEXEC}/${program} ${links}/bin/${program} SYMBOLIC)
  install(FILES ${links}/bin/${program} DESTINATION ${CMAKE_INSTALL_BINDIR})
endforeach()
file(CREATE_LINK ../../../${SEDRA_INSTALL_LIBEXEC}/help ${links}/doc/user-guide SYMBOLIC)
install(FILES ${links}/doc/user-guide DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/sedra-plot)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME sedra-plot)
set(CPACK_PACKAGE_VENDOR "Sedra Instruments")
set(CPACK_PACKAGE_CONTACT "Sedra core-lab support <support@sedra-instruments.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "composite plots of sediment-core scanner sections")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
  "Sedra-PLOT reads the folders a sediment-core scanner writes (document.txt, optical and\n"
  "X-radiograph TIFFs, RAW radiographs) and paints one composite plot along the depth axis,\n"
  "which can be annotated, printed, saved as PDF or image and copied.  With sedra-render\n"
  "(the plot without a window) and make-sample-core (sample section folders).")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
# The Qt and libtiff libraries are found from the programs themselves; the fonts are
# what the plot's "Arial" and "MS Sans Serif" are drawn with.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-liberation")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils")
set(CPACK_STRIP_FILES ON)
include(CPack)
