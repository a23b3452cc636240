# Builds and runs a user's project on the installed copy KIND.
include(${CMAKE_CURRENT_LIST_DIR}/../package/package.cmake)
need_tools(pkg-config)

check_prefix(${WORK_DIR}/${KIND} ${KIND} "${WORK_DIR}/on ${KIND}")
