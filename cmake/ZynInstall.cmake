include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZynBase)
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(TARGETS zynbase EXPORT ZynBaseTargets
    RUNTIME COMPONENT Runtime
    LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development
    ARCHIVE COMPONENT Development
    FILE_SET HEADERS COMPONENT Development)
install(EXPORT ZynBaseTargets NAMESPACE ZynBase:: DESTINATION ${package_dir} COMPONENT Development)

configure_package_config_file(cmake/ZynBaseConfig.cmake.in ${PROJECT_BINARY_DIR}/ZynBaseConfig.cmake
    INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZynBaseConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
        ${PROJECT_BINARY_DIR}/ZynBaseConfig.cmake
        ${PROJECT_BINARY_DIR}/ZynBaseConfigVersion.cmake
    DESTINATION ${package_dir} COMPONENT Development)

# The .pc file names the prefix relative to itself, so an installed tree may be moved.
file(RELATIVE_PATH pkgconfig_to_prefix
    ${CMAKE_INSTALL_PREFIX}/${pkgconfig_dir} ${CMAKE_INSTALL_PREFIX})
set(pkgconfig_static_define "")
set(pkgconfig_private "")
if(NOT BUILD_SHARED_LIBS)
    set(pkgconfig_static_define " -DZYN_STATIC_DEFINE")
    set(runtime ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
    list(FILTER runtime INCLUDE REGEX "^(stdc\\+\\+|c\\+\\+)$")
    list(TRANSFORM runtime PREPEND -l)
    list(REMOVE_DUPLICATES runtime)
    list(JOIN installed_libraries " " pkgconfig_private)
    string(APPEND pkgconfig_private " ${runtime}")
endif()
string(REGEX REPLACE "/$" "" pkgconfig_to_prefix "${pkgconfig_to_prefix}")
configure_file(cmake/zynbase.pc.in ${PROJECT_BINARY_DIR}/zynbase.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zynbase.pc DESTINATION ${pkgconfig_dir} COMPONENT Development)

# The pages keep the folders in which they link to each other.
install(FILES README.md CHANGELOG.md CONTRIBUTING.md
    DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Development)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Development
    FILES_MATCHING PATTERN "*.md" PATTERN "*.jpg" PATTERN "guide/*.cpp" PATTERN "read_tin.py"
        PATTERN "mainpage.md" EXCLUDE)
