# Everything comes from Debian packages; tools/install_packages.sh names them.
find_package(Threads REQUIRED)
find_package(nlohmann_json 3.10 REQUIRED)
find_package(CLI11 2.1 REQUIRED)
find_package(fmt 9 REQUIRED)
# Debian's Imath, which it looks for, tells of a file of its Python side that no package has.
set(CMAKE_MESSAGE_LOG_LEVEL NOTICE)
find_package(OpenImageIO 2.4 REQUIRED)
unset(CMAKE_MESSAGE_LOG_LEVEL)
# Debian's package names the folder of an optional dependency that it does not ask for.
get_target_property(_oiio_includes OpenImageIO::OpenImageIO INTERFACE_INCLUDE_DIRECTORIES)
list(FILTER _oiio_includes EXCLUDE REGEX "opencv")
set_target_properties(OpenImageIO::OpenImageIO PROPERTIES
    INTERFACE_INCLUDE_DIRECTORIES "${_oiio_includes}"
    INTERFACE_SYSTEM_INCLUDE_DIRECTORIES "${_oiio_includes}")
find_package(embree 3 REQUIRED)
find_package(TBB REQUIRED)
find_package(tinyobjloader REQUIRED)
if(NEZAIVA_TESTS)
    find_package(GTest REQUIRED)
endif()
if(NEZAIVA_BENCH)
    find_package(benchmark REQUIRED)
endif()
