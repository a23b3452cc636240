# Describes the Debian packages libzynbase1 and libzynbase-dev, which `cpack` makes in a build of
# the shared library.
set(runtime_package libzynbase${PROJECT_VERSION_MAJOR})
set(development_package libzynbase-dev)
set(debian_version ${PROJECT_VERSION}-1)
set(maintainer "ZynBase developers <developers@zynbase.invalid>")

set(generator_licence "")
if(Triangle_FOUND)
    string(JOIN "\n" generator_licence
        "" "The shared library is linked with a mesh generator, which is a separate package and"
        "free for non-commercial use only; its own copyright file has the terms."
        "A build with -DZYN_WITH_TRIANGLE=OFF does not use it.")
endif()

# Each package has its own copy of these papers; an installation without packages has none.
string(TIMESTAMP year "%Y" UTC)
string(TIMESTAMP today "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(cmake/debian/changelog.in ${PROJECT_BINARY_DIR}/debian/changelog.Debian @ONLY)
configure_file(cmake/debian/copyright.in ${PROJECT_BINARY_DIR}/debian/copyright @ONLY)
execute_process(COMMAND gzip -9nf ${PROJECT_BINARY_DIR}/debian/changelog.Debian
    COMMAND_ERROR_IS_FATAL ANY)
foreach(package IN ITEMS runtime development)
    install(FILES
            ${PROJECT_BINARY_DIR}/debian/changelog.Debian.gz
            ${PROJECT_BINARY_DIR}/debian/copyright
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${${package}_package}
        COMPONENT ${package}_papers EXCLUDE_FROM_ALL)
endforeach()
install(FILES cmake/debian/libzynbase-dev.overrides
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides RENAME ${development_package}
    COMPONENT development_papers EXCLUDE_FROM_ALL)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zynbase)
set(CPACK_PACKAGE_CONTACT ${maintainer})
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(about "ZynBase is a C++20 library for terrain surfaces (Delaunay TINs, breaklines,
contours, volumes), point clouds and photogrammetric blocks, with the
containers, geometry and services that they need.
.")

# No licence is granted yet, so the packages do not belong to the free part of a distribution.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION non-free/libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "terrain surfaces and photogrammetric blocks - shared library
${about}
This package has the shared library.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${development_package})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION non-free/libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "${runtime_package} (= ${debian_version}), qtbase5-dev (>= 5.15)")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "terrain surfaces and photogrammetric blocks - development files
${about}
This package has the headers, the files for CMake and pkg-config, and the
sources of the example programs.")

set(CPACK_COMPONENTS_ALL Runtime runtime_papers Development Examples development_papers)
include(CPack)
foreach(component IN ITEMS Runtime runtime_papers)
    cpack_add_component(${component} GROUP runtime)
endforeach()
foreach(component IN ITEMS Development Examples development_papers)
    cpack_add_component(${component} GROUP development)
endforeach()
