# Functions of the package tests. They work in WORK_DIR, where `shared` and `static` are installed
# copies.
cmake_minimum_required(VERSION 3.24)

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Runs a command and gives what it prints on standard output.
function(read_output variable)
    execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
    set(${variable} "${output}" PARENT_SCOPE)
endfunction()

# Skips the test if a tool is missing. On Debian, where scripts/setup installs the tools, fails it.
macro(need_tools)
    foreach(tool IN ITEMS ${ARGN})
        find_program(path_of_${tool} ${tool})
        if(NOT path_of_${tool})
            if(EXISTS /etc/debian_version)
                message(FATAL_ERROR "${tool} is missing; scripts/setup installs it")
            endif()
            message(STATUS "skipped: there is no ${tool}")
            return()
        endif()
    endforeach()
endmacro()

# Configures and builds a project in BUILD, as its user does, with further arguments for the
# configuration.
function(build_project source build)
    run(${CMAKE_COMMAND} -S ${source} -B ${build} -G ${GENERATOR} -D CMAKE_CXX_COMPILER=${CXX}
        -D CMAKE_CXX_FLAGS=${CXX_FLAGS} -D CMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER} ${ARGN})
    run(${CMAKE_COMMAND} --build ${build})
endfunction()

# Runs the program of tests/consumer/project and checks what it found.
function(check_consumer program)
    string(REPLACE "." ";" version ${VERSION})
    list(GET version 0 major)
    list(GET version 1 minor)
    list(GET version 2 patch)
    math(EXPR number "${major} * 10000 + ${minor} * 100 + ${patch}")
    read_output(found ${program})
    set(expected "\nversion ${VERSION} ${number}, image 0.001, generator ${WITH_TRIANGLE}, hills.xyz\n$")
    if(NOT found MATCHES "${expected}")
        message(FATAL_ERROR "${program} printed: ${found}")
    endif()
endfunction()

# Builds and runs a user's project on the copy KIND in PREFIX, with CMake and with pkg-config.
function(check_prefix prefix kind build)
    set(project ${SOURCE_DIR}/tests/consumer/project)
    file(REMOVE_RECURSE ${build})
    build_project(${project} ${build}/cmake -D CMAKE_PREFIX_PATH=${prefix})
    check_consumer(${build}/cmake/consumer)

    set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig)
    build_project(${project} ${build}/pkg-config -D ZYNBASE_BY_PKG_CONFIG=${kind})
    # A static copy has nothing there to be loaded.
    set(ENV{LD_LIBRARY_PATH} ${prefix}/${LIBDIR})
    check_consumer(${build}/pkg-config/consumer)
endfunction()
