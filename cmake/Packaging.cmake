# What cmake --install lays down. A plug-in library is looked for beside the program, so the program
# stands with it in lib/ombrix, and bin/ holds a link to it:
#
#   bin/nezaiva -> ../lib/ombrix/nezaiva
#   lib/libombrix.so               the host's runtime, and libombrix_image.so, which it opens for images
#   lib/ombrix/                    the program and libnezaiva.so
#   lib/cmake/nezaiva/             find_package(nezaiva): nezaiva::ombrix_sdk, nezaiva::ombrix
#   include/ombrix/                what a plug-in library includes
#   share/doc/nezaiva/             licence, documentation, examples
include(CMakePackageConfigHelpers)

set(NEZAIVA_PLUGIN_FOLDER "${CMAKE_INSTALL_LIBDIR}/ombrix")
set(NEZAIVA_CMAKE_FOLDER "${CMAKE_INSTALL_LIBDIR}/cmake/nezaiva")

set_target_properties(nezaiva nezaiva_module PROPERTIES INSTALL_RPATH "$ORIGIN/..")
install(TARGETS ombrix ombrix_sdk EXPORT nezaivaTargets LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
install(TARGETS ombrix_image LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
install(TARGETS nezaiva nezaiva_module
        RUNTIME DESTINATION "${NEZAIVA_PLUGIN_FOLDER}" LIBRARY DESTINATION "${NEZAIVA_PLUGIN_FOLDER}")
file(RELATIVE_PATH _program_from_bin "/${CMAKE_INSTALL_BINDIR}" "/${NEZAIVA_PLUGIN_FOLDER}/nezaiva")
install(CODE "
    set(folder \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}\")
    file(MAKE_DIRECTORY \"\${folder}\")
    file(CREATE_LINK \"${_program_from_bin}\" \"\${folder}/nezaiva\" SYMBOLIC)
    message(STATUS \"Installing: \${folder}/nezaiva\")")

install(DIRECTORY sdk/include/ombrix DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" FILES_MATCHING PATTERN "*.h")
install(FILES LICENSE README.md DESTINATION "${CMAKE_INSTALL_DOCDIR}")
install(DIRECTORY docs examples DESTINATION "${CMAKE_INSTALL_DOCDIR}")

install(EXPORT nezaivaTargets NAMESPACE nezaiva:: DESTINATION "${NEZAIVA_CMAKE_FOLDER}")
write_basic_package_version_file("${CMAKE_BINARY_DIR}/nezaivaConfigVersion.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES cmake/nezaivaConfig.cmake "${CMAKE_BINARY_DIR}/nezaivaConfigVersion.cmake"
        DESTINATION "${NEZAIVA_CMAKE_FOLDER}")
