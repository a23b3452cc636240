# Makes the project of the README's blocks, as it stands there.
include(${CMAKE_CURRENT_LIST_DIR}/../package/package.cmake)

set(project ${WORK_DIR}/waves)
file(REMOVE_RECURSE ${project})
file(READ ${SOURCE_DIR}/README.md readme)

function(write_block language path)
    if(NOT readme MATCHES "```${language}\n([^`]*)```")
        message(FATAL_ERROR "The README has no block of ${language}")
    endif()
    file(WRITE ${path} "${CMAKE_MATCH_1}")
endfunction()

function(expect_triangles program)
    execute_process(COMMAND ${program} WORKING_DIRECTORY ${project} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
    if(NOT output MATCHES "^19602 triangles" OR NOT EXISTS ${project}/waves.obj)
        message(FATAL_ERROR "${program} printed: ${output}")
    endif()
    file(REMOVE ${project}/waves.obj)
endfunction()

write_block(cpp ${project}/waves.cpp)
write_block(cmake ${project}/CMakeLists.txt)
build_project(${project} ${project}/build -D CMAKE_PREFIX_PATH=${WORK_DIR}/${KIND})
expect_triangles(${project}/build/waves)
