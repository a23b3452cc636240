# Compares the names that the shared library exports with symbols.txt. After an intended change of
# the interface, run:
#     ZYN_UPDATE_SYMBOLS=1 ctest --preset dev -R package_symbols
include(${CMAKE_CURRENT_LIST_DIR}/package.cmake)
need_tools(nm)

set(ENV{LC_ALL} C)
set(stored ${CMAKE_CURRENT_LIST_DIR}/symbols.txt)
set(found ${WORK_DIR}/symbols.txt)
# Leaves out symbols that depend on the compiler: the tables of classes, and members of a record
# that a `requires` clause excludes for its precision, but Clang 14 emits.
set(compilers_choice
    -e "/^(vtable|typeinfo|typeinfo name|VTT) for zyn::/d"
    -e "/^zyn::TinRecord<double>::normal\\(/d"
    -e "/^zyn::TinRecord<float>::(Normal\\(|find\\(double)/d")
set(shorter -e "s/zyn:://g" -e "s/std::type_identity<(\\w+)>::type/\\1/g")
file(MAKE_DIRECTORY ${WORK_DIR})
execute_process(
    COMMAND nm --dynamic --defined-only --demangle ${LIBRARY}
    COMMAND sed -E -e "s/^[0-9a-f]+ . //" ${compilers_choice} ${shorter}
    COMMAND sort -u
    COMMAND fold --spaces --width=120
    COMMAND sed "s/ $//"
    OUTPUT_FILE ${found} COMMAND_ERROR_IS_FATAL ANY)

if("$ENV{ZYN_UPDATE_SYMBOLS}")
    file(COPY_FILE ${found} ${stored})
endif()
execute_process(COMMAND diff --unified=0 ${stored} ${found} RESULT_VARIABLE differs)
if(differs)
    message(FATAL_ERROR "The exported names have changed: - went, + came")
endif()
