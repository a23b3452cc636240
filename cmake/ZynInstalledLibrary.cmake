# Adds to LIST how an installed package names a library: -lNAME where the linker looks anyway, otherwise its path.
function(zyn_installed_library list path)
    get_filename_component(folder ${path} DIRECTORY)
    get_filename_component(name ${path} NAME_WE)
    if(folder IN_LIST CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES)
        string(REGEX REPLACE "^lib" "-l" path ${name})
    endif()
    set(${list} ${${list}} ${path} PARENT_SCOPE)
endfunction()
