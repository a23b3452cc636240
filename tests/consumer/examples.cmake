# Builds the installed example programs as projects of their own, and runs each on the shipped data.
include(${CMAKE_CURRENT_LIST_DIR}/../package/package.cmake)

set(prefix ${WORK_DIR}/${KIND})
file(GLOB sources LIST_DIRECTORIES ON ${prefix}/share/doc/*/examples)

function(check_example name input)
    set(build ${WORK_DIR}/examples/${name})
    file(REMOVE_RECURSE ${build})
    build_project(${sources}/${name} ${build} -D CMAKE_PREFIX_PATH=${prefix})
    run(${build}/${name} ${SOURCE_DIR}/data/${input} ${ARGN} ${build}/out)
endfunction()

check_example(block block.txt)
check_example(classes jacksboro.asc)
check_example(host points.txt)
check_example(surface jacksboro.asc --out)
