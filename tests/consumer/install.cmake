# Installs the build into a prefix with a blank in its path.
include(${CMAKE_CURRENT_LIST_DIR}/../package/package.cmake)

file(REMOVE_RECURSE ${WORK_DIR}/${KIND})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/${KIND})
