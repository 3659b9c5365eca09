# What is installed besides the programs, and the Debian package: `./dev package` makes it and tries it in a clean root.

# Documents stand in the folders of the sources, so that the links between them hold; those for developers stay there.
install(FILES packaging/README.md packaging/copyright CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR}
  PATTERN "*.1" EXCLUDE PATTERN "architecture.md" EXCLUDE PATTERN "fort.*" EXCLUDE PATTERN "results" EXCLUDE
  PATTERN "__pycache__" EXCLUDE PATTERN ".snakemake" EXCLUDE)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/package)
set(CPACK_PACKAGE_CONTACT "none <none@example.org>") # the field must be there; nobody has been named
configure_file(packaging/changelog.in ${PROJECT_BINARY_DIR}/changelog @ONLY)
install_compressed(${PROJECT_BINARY_DIR}/changelog ${CMAKE_INSTALL_DOCDIR})

set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "input preprocessor of the VARNOK flame solver")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"varpre reads a reaction mechanism, thermochemical and molecular data and run
conditions, checks and completes them, and writes the store file from which the
VARNOK solver for flames and reactive flows starts.
.
The programs around it judge input files in scripts and version control, bring
in and hand on mechanisms in other formats, and show and compare store files.")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "gnuplot-nox, python3, snakemake")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
