# Debian packages from CPack (`cpack -G DEB` in a build configured with
# BUILD_SHARED_LIBS=ON and CMAKE_INSTALL_PREFIX=/usr; scripts/package does it).
# One package per install component:
#   runtime    -> libtolva0         libtolva.so.0
#   dev        -> libtolva-dev      headers, libtolva.so, libtolva.a, CMake package, tolva.pc
#   qt-runtime -> libtolva-qt0      libtolva-qt.so.0
#   qt-dev     -> libtolva-qt-dev   Qt binding headers, libtolva-qt.so/.a, its CMake targets, tolva-qt.pc
#   gui        -> tolva-gui         the GUI host program
# Library dependencies come from the binaries (dpkg-shlibdeps); the ones
# between these packages are fixed here, pinned to the same version.

set(TOLVA_DEB_MAINTAINER "Seed 0516682d maintainers <maintainers@users.noreply.c-seed-0516682d.example>")
set(TOLVA_DEB_VERSION ${PROJECT_VERSION})

# component;package name;section;summary;extended description
# component|package name|section|summary|extended description (CPack indents
# it; an empty line starts a new paragraph)
set(core "Tolva gives a C++ program on Linux ready-made services through one object:\npaths, files, profile values, text and CSV data, settings and an FTP client.")
set(binding "The binding gives the Tolva component its window services on Qt 6 Widgets:\nscreen metrics, message boxes, file dialogs, and adapters for host forms\nand list boxes.")
set(TOLVA_DEB_PACKAGES
  "runtime|libtolva0|libs|utility component for C++ desktop programs - shared library|${core}\n\nThis package holds the shared library libtolva.so.0."
  "dev|libtolva-dev|libdevel|utility component for C++ desktop programs - development files|${core}\n\nThis package holds the headers, the static archive, the CMake package\n(find_package(Tolva)) and the pkg-config file (tolva)."
  "qt-runtime|libtolva-qt0|libs|Qt 6 binding of the Tolva component - shared library|${binding}\n\nThis package holds the shared library libtolva-qt.so.0."
  "qt-dev|libtolva-qt-dev|libdevel|Qt 6 binding of the Tolva component - development files|${binding}\n\nThis package holds the headers, the static archive, the CMake targets\n(Tolva::tolva-qt) and the pkg-config file (tolva-qt)."
  "gui|tolva-gui|x11|GUI host program of the Tolva component|A small Qt 6 window that shows the Tolva component at work: a CSV file\nin a tab-stopped list box and an FTP directory listing.")

# Every package carries its copyright and changelog in /usr/share/doc/NAME,
# where Debian's tools look for them. The changelog is compressed without a
# time stamp so two builds of the same sources give the same bytes.
find_program(TOLVA_GZIP gzip)
set(TOLVA_DEB_DOC ${PROJECT_BINARY_DIR}/deb-doc)
configure_file(${PROJECT_SOURCE_DIR}/cmake/debian/changelog.in ${TOLVA_DEB_DOC}/changelog @ONLY)
if(TOLVA_GZIP)
  execute_process(COMMAND ${TOLVA_GZIP} -9nc INPUT_FILE ${TOLVA_DEB_DOC}/changelog
    OUTPUT_FILE ${TOLVA_DEB_DOC}/changelog.gz)
  execute_process(COMMAND ${TOLVA_GZIP} -9nc INPUT_FILE ${PROJECT_SOURCE_DIR}/cmake/debian/tolva-gui.1
    OUTPUT_FILE ${TOLVA_DEB_DOC}/tolva-gui.1.gz)
  install(FILES ${TOLVA_DEB_DOC}/tolva-gui.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT gui)
endif()

set(TOLVA_DEB_COMPONENTS)
foreach(entry IN LISTS TOLVA_DEB_PACKAGES)
  string(REPLACE "|" ";" fields "${entry}")
  list(GET fields 0 component)
  list(GET fields 1 package)
  list(GET fields 2 section)
  list(GET fields 3 summary)
  list(GET fields 4 details)
  string(TOUPPER ${component} upper)
  list(APPEND TOLVA_DEB_COMPONENTS ${component})
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
  set(CPACK_COMPONENT_${upper}_DESCRIPTION "${summary}\n${details}")
  set(CPACK_DEBIAN_${upper}_FILE_NAME DEB-DEFAULT)
  install(FILES ${PROJECT_SOURCE_DIR}/cmake/debian/copyright
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package} COMPONENT ${component})
  if(TOLVA_GZIP)
    install(FILES ${TOLVA_DEB_DOC}/changelog.gz
      DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package} COMPONENT ${component})
  endif()
endforeach()

set(pinned "(= ${TOLVA_DEB_VERSION})")
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "libtolva0 ${pinned}, libpoco-dev, libssl-dev, libsqlite3-dev")
set(CPACK_DEBIAN_QT-RUNTIME_PACKAGE_DEPENDS "libtolva0 ${pinned}")
set(CPACK_DEBIAN_QT-DEV_PACKAGE_DEPENDS "libtolva-qt0 ${pinned}, libtolva-dev ${pinned}, qt6-base-dev")
set(CPACK_DEBIAN_GUI_PACKAGE_DEPENDS "libtolva-qt0 ${pinned}")
# Packages holding a shared library tell the dynamic linker's cache to refresh.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_DEBIAN_QT-RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL ${TOLVA_DEB_COMPONENTS})
set(CPACK_PACKAGE_NAME tolva)
set(CPACK_PACKAGE_VENDOR "Tolva")
set(CPACK_PACKAGE_VERSION ${TOLVA_DEB_VERSION})
set(CPACK_PACKAGE_CONTACT ${TOLVA_DEB_MAINTAINER})
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${TOLVA_DEB_MAINTAINER})
set(CPACK_DEBIAN_PACKAGE_VERSION ${TOLVA_DEB_VERSION})
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# libtolva-qt.so.0 needs libtolva.so.0, which no installed package owns yet.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR} ${PROJECT_BINARY_DIR}/qt)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
include(CPack)
