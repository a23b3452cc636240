# Installs the build into a prefix with a blank in its path, and makes a project there of the README's blocks.
cmake_minimum_required(VERSION 3.24)

set(prefix ${WORK_DIR}/installed)
set(project ${WORK_DIR}/waves)

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(write_block language path)
    file(READ ${README} text)
    if(NOT text MATCHES "```${language}\n([^`]*)```")
        message(FATAL_ERROR "The README has no block of ${language}")
    endif()
    file(WRITE ${path} "${CMAKE_MATCH_1}")
endfunction()

function(expect_triangles program)
    execute_process(COMMAND ${program} WORKING_DIRECTORY ${project} OUTPUT_VARIABLE output
        COMMAND_ERROR_IS_FATAL ANY)
    if(NOT output MATCHES "^19602 triangles" OR NOT EXISTS ${project}/waves.obj)
        message(FATAL_ERROR "${program} printed: ${output}")
    endif()
    file(REMOVE ${project}/waves.obj)
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
write_block(cpp ${project}/waves.cpp)
write_block(cmake ${project}/CMakeLists.txt)

run(${CMAKE_COMMAND} -S ${project} -B ${project}/build -G ${GENERATOR}
    -D CMAKE_PREFIX_PATH=${prefix} -D CMAKE_CXX_COMPILER=${CXX} -D CMAKE_CXX_FLAGS=${CXX_FLAGS})
run(${CMAKE_COMMAND} --build ${project}/build)
expect_triangles(${project}/build/waves)

if(PKG_CONFIG)
    set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig)
    execute_process(COMMAND ${PKG_CONFIG} --cflags --libs zynbase OUTPUT_VARIABLE flags COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(flags UNIX_COMMAND "${CXX_FLAGS} waves.cpp ${flags}")
    execute_process(COMMAND ${CXX} -std=c++20 ${flags} -o waves WORKING_DIRECTORY ${project}
        COMMAND_ERROR_IS_FATAL ANY)
    set(ENV{LD_LIBRARY_PATH} ${prefix}/${LIBDIR})
    expect_triangles(${project}/waves)
endif()
