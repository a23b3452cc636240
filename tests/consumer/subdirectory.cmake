# Builds a user's project that has the library's sources in a subdirectory, and installs the library
# KIND from there.
include(${CMAKE_CURRENT_LIST_DIR}/../package/package.cmake)

set(build "${WORK_DIR}/on sources")
string(COMPARE EQUAL ${KIND} shared is_shared)
build_project(${CMAKE_CURRENT_LIST_DIR}/project ${build} -D ZYNBASE_SOURCES=${SOURCE_DIR} -D ZYN_INSTALL=ON
    -D BUILD_SHARED_LIBS=${is_shared} -D ZYN_WITH_TRIANGLE=${WITH_TRIANGLE} -D CMAKE_INSTALL_LIBDIR=${LIBDIR})
check_consumer(${build}/consumer)
file(REMOVE_RECURSE ${WORK_DIR}/${KIND})
run(${CMAKE_COMMAND} --install ${build} --prefix ${WORK_DIR}/${KIND})
