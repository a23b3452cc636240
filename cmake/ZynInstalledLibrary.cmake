# Appends to LIST the name of a library for an installed package: -lNAME if the linker searches its
# folder by default, otherwise its path.
function(zyn_installed_library list path)
    get_filename_component(folder ${path} DIRECTORY)
    get_filename_component(name ${path} NAME_WE)
    if(folder IN_LIST CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES)
        string(REGEX REPLACE "^lib" "-l" path ${name})
    endif()
    set(${list} ${${list}} ${path} PARENT_SCOPE)
endfunction()
