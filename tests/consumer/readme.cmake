# Follows the README: installs the build, saves the blocks as files and runs the commands as they
# are, except for the prefix and the compiler.
include(${CMAKE_CURRENT_LIST_DIR}/../package/package.cmake)
need_tools(pkg-config)

set(place ${BUILD_DIR}/tests/readme)
set(prefix ${place}/installed)
set(project ${place}/waves)
file(REMOVE_RECURSE ${place})
file(READ ${SOURCE_DIR}/README.md readme)

function(write_block language path)
    if(NOT readme MATCHES "```${language}\n([^`]*)```")
        message(FATAL_ERROR "The README has no block of ${language}")
    endif()
    file(WRITE ${path} "${CMAKE_MATCH_1}")
endfunction()

# Runs in FOLDER the line of the README that begins with BEGINNING.
function(run_line variable beginning folder)
    if(NOT readme MATCHES "\n(${beginning}[^\n]*)")
        message(FATAL_ERROR "The README has no line ${beginning}")
    endif()
    string(REPLACE "sudo cmake" "cmake" line "${CMAKE_MATCH_1}")
    string(REPLACE "&& sudo ldconfig" "" line "${line}")
    string(REPLACE "build/release" "'${BUILD_DIR}'" line "${line}")
    string(REPLACE "/usr/local" "'${prefix}'" line "${line}")
    string(REPLACE "g++ " "'${CXX}' ${CXX_FLAGS} " line "${line}")
    execute_process(COMMAND sh -ec "${line}" WORKING_DIRECTORY ${folder}
        OUTPUT_VARIABLE output COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
    set(${variable} "${output}" PARENT_SCOPE)
endfunction()

# Checks what the program of the block prints.
function(expect_output beginning)
    run_line(printed ${beginning} ${project})
    if(NOT readme MATCHES "```text\n([^`]*)```")
        message(FATAL_ERROR "The README has no output")
    endif()
    string(FIND "${printed}" "${CMAKE_MATCH_1}" position)
    if(position EQUAL -1 OR NOT EXISTS ${project}/waves.obj)
        message(FATAL_ERROR "${beginning} printed: ${printed}")
    endif()
    file(REMOVE ${project}/waves.obj)
endfunction()

# An installation in /usr/local needs none of these.
set(ENV{CMAKE_PREFIX_PATH} ${prefix})
set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig)
set(ENV{LD_LIBRARY_PATH} ${prefix}/${LIBDIR})
set(ENV{CXX} ${CXX})
set(ENV{CXXFLAGS} ${CXX_FLAGS})

write_block(cpp ${project}/waves.cpp)
write_block(cmake ${project}/CMakeLists.txt)
run_line(installed "sudo cmake --install" ${SOURCE_DIR})
expect_output("cmake -B build")
if(EXISTS ${prefix}/${LIBDIR}/libzynbase.so)
    expect_output("g[+][+] ")
endif()
