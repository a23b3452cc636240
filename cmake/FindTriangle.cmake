# Finds the mesh generator: triangle.h and libtriangle. Defines Triangle_FOUND and the target
# Triangle::Triangle.
find_path(Triangle_INCLUDE_DIR triangle.h PATH_SUFFIXES triangle)
find_library(Triangle_LIBRARY triangle)
mark_as_advanced(Triangle_INCLUDE_DIR Triangle_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Triangle REQUIRED_VARS Triangle_LIBRARY Triangle_INCLUDE_DIR)

if(Triangle_FOUND AND NOT TARGET Triangle::Triangle)
    add_library(Triangle::Triangle UNKNOWN IMPORTED)
    set_target_properties(Triangle::Triangle PROPERTIES
        IMPORTED_LOCATION "${Triangle_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${Triangle_INCLUDE_DIR}")
endif()
