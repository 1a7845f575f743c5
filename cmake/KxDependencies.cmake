# SPDX-License-Identifier: Apache-2.0
# Every package that some target uses; cmake/packages.txt names the Debian packages that hold them.

find_package(Threads REQUIRED)
find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui LinguistTools Test Widgets Xml)
find_package(Boost 1.74 REQUIRED)
find_package(Eigen3 3.4 REQUIRED NO_MODULE)
find_package(FlatBuffers 2.0 REQUIRED CONFIG)
find_package(zstd 1.5 REQUIRED CONFIG)
# Debian's Imath complains about its Python part, which nobody here uses; found before, it is not looked for again.
set(CMAKE_MESSAGE_LOG_LEVEL NOTICE)
find_package(Imath 3.1 QUIET REQUIRED CONFIG)
unset(CMAKE_MESSAGE_LOG_LEVEL)
set(OPENIMAGEIO_CONFIG_DO_NOT_FIND_IMATH ON)
find_package(OpenImageIO 2.4 REQUIRED CONFIG)
# Debian's OpenImageIO names OpenCV's headers, which its own headers need only where somebody asks for OpenCV.
get_target_property(_kx_oiio_includes OpenImageIO::OpenImageIO INTERFACE_INCLUDE_DIRECTORIES)
list(REMOVE_ITEM _kx_oiio_includes /usr/include/opencv4)
set_target_properties(OpenImageIO::OpenImageIO PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "${_kx_oiio_includes}")
find_package(JPEG REQUIRED)
find_package(PNG 1.6 REQUIRED)
find_package(embree 3.13 REQUIRED CONFIG)
find_package(TBB REQUIRED CONFIG)
find_package(assimp 5.2 REQUIRED CONFIG)
find_package(CLI11 2.1 REQUIRED CONFIG)

find_package(PkgConfig REQUIRED)
pkg_check_modules(isal REQUIRED IMPORTED_TARGET GLOBAL libisal)
pkg_check_modules(libdeflate REQUIRED IMPORTED_TARGET GLOBAL libdeflate)
