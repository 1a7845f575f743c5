# SPDX-License-Identifier: Apache-2.0
# What cmake --install adds to the targets: the package files that find_package reads.
include(CMakePackageConfigHelpers)

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/kxAssets")
configure_package_config_file(cmake/kxAssetsConfig.cmake.in "${PROJECT_BINARY_DIR}/kxAssetsConfig.cmake"
  INSTALL_DESTINATION "${package_folder}"
)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/kxAssetsConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/kxAssetsConfig.cmake"
  "${PROJECT_BINARY_DIR}/kxAssetsConfigVersion.cmake"
  DESTINATION "${package_folder}"
)
install(EXPORT kxAssetsTargets NAMESPACE kx:: DESTINATION "${package_folder}")
install(FILES LICENSE DESTINATION "${CMAKE_INSTALL_DOCDIR}")
