# Makes the Debian packages of the build, checks them, installs them into a folder, and builds a
# user's project on them.
include(${CMAKE_CURRENT_LIST_DIR}/package.cmake)
need_tools(dpkg dpkg-deb dpkg-shlibdeps fakeroot lintian pkg-config)

set(packages ${WORK_DIR}/debian)
set(root ${packages}/root)
file(REMOVE_RECURSE ${packages})
run(${CMAKE_CPACK_COMMAND} --config ${BUILD_DIR}/CPackConfig.cmake -B ${packages})
file(GLOB runtime ${packages}/libzynbase1_${VERSION}-1_*.deb)
file(GLOB development ${packages}/libzynbase-dev_${VERSION}-1_*.deb)

function(expect_dependencies package)
    read_output(found dpkg-deb --field ${package} Depends)
    foreach(dependency IN LISTS ARGN)
        string(FIND "${found}" "${dependency}" position)
        if(position EQUAL -1)
            message(SEND_ERROR "${package} does not depend on ${dependency} but on ${found}")
        endif()
    endforeach()
    set(found "${found}" PARENT_SCOPE)
endfunction()

expect_dependencies(${development} "libzynbase1 (= ${VERSION}-1)" "qtbase5-dev (>= 5.15)")
expect_dependencies(${runtime} libqt5core5a libarmadillo libstdc++6)
string(REGEX MATCH libtriangle generator "${found}")
if(WITH_TRIANGLE AND NOT generator OR generator AND NOT WITH_TRIANGLE)
    message(SEND_ERROR "${runtime} depends on ${found}")
endif()

run(lintian --fail-on error --tag-display-limit 0 ${runtime} ${development})

# The machine's packages count as installed in the folder, so dependencies are checked. The machine's
# libraries are not indexed again.
file(COPY /var/lib/dpkg/status DESTINATION ${root}/var/lib/dpkg)
file(MAKE_DIRECTORY ${root}/var/lib/dpkg/info ${root}/var/lib/dpkg/updates)
file(WRITE ${packages}/bin/ldconfig "#!/bin/sh\n")
file(CHMOD ${packages}/bin/ldconfig PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
execute_process(COMMAND ${CMAKE_COMMAND} -E env PATH=${packages}/bin:$ENV{PATH}:/usr/sbin:/sbin
    fakeroot dpkg --root=${root} --log=${packages}/log --force-not-root --force-script-chrootless --no-triggers
        --install ${runtime} ${development}
    RESULT_VARIABLE result ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "dpkg does not install the packages: ${errors}")
endif()
check_prefix(${root}/usr shared "${WORK_DIR}/on debian")
