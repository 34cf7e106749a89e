# What is installed, and in which package (a component) it comes: tests/goldens/installed_files.txt lists all of it.
include(CMakePackageConfigHelpers)
set(package_files ${CMAKE_INSTALL_LIBDIR}/cmake/ts_bf_pd_nat_static)
set(data ${CMAKE_INSTALL_DATADIR}/tessel_switch)

# A .pc file finds the rest from where it lies itself.
file(RELATIVE_PATH prefix_from_pc ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})

# Others link ts::NAME; pkg-config knows the library by the target's own name.
function(ts_library name target about)
    add_library(ts::${name} ALIAS ${target})
    if(TS_INSTALL)
        set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
        install(TARGETS ${target} EXPORT ts_targets
            LIBRARY COMPONENT libraries NAMELINK_COMPONENT development)
        configure_file(cmake/library.pc.in ${PROJECT_BINARY_DIR}/${target}.pc @ONLY)
        install(FILES ${PROJECT_BINARY_DIR}/${target}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
            COMPONENT development)
    endif()
endfunction()
ts_library(pd ts_bf_pd_nat_static "Program-dependent API of tessel_switch; the process supplies the chip driver")
ts_library(model tessel_model "Model of the chip driver below ts_bf_pd_nat_static")
ts_library(tap tessel_tap "Traces, records and refuses calls before any chip driver")
if(TS_BUILD_SHELL)
    ts_library(console tessel_console "A console in a process that uses ts_bf_pd_nat_static")
endif()
add_library(ts::driver ALIAS pd_driver) # the headers of whoever writes a driver
if(NOT TS_INSTALL)
    return()
endif()

set_target_properties(pd_headers PROPERTIES EXPORT_NAME headers)
set_target_properties(pd_driver PROPERTIES EXPORT_NAME driver)
install(TARGETS pd_headers pd_driver EXPORT ts_targets)
install(EXPORT ts_targets NAMESPACE ts:: DESTINATION ${package_files} COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ts_bf_pd_nat_staticConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES cmake/ts_bf_pd_nat_staticConfig.cmake ${PROJECT_BINARY_DIR}/ts_bf_pd_nat_staticConfigVersion.cmake
    DESTINATION ${package_files} COMPONENT development)

file(GLOB public_headers CONFIGURE_DEPENDS ${TS_ROOT}/include/*.h)
file(GLOB driver_headers CONFIGURE_DEPENDS ${TS_ROOT}/driver/*.h)
install(FILES ${public_headers} ${TS_HEADERS} model/model.h tap/tap.h console/console.h
    DESTINATION ${TS_INSTALL_HEADERS} COMPONENT development)
install(FILES ${driver_headers} ${TS_DRIVER_HEADERS} DESTINATION ${TS_INSTALL_HEADERS}/driver COMPONENT development)

# Programs, and what they read. A generator that runs here is of no use on another machine.
if(TS_BUILD_SHELL)
    install(TARGETS tessel-shell COMPONENT tools)
endif()
if(NOT TESSEL_PDGEN)
    install(TARGETS pdgen COMPONENT tools)
elseif(NOT CMAKE_CROSSCOMPILING)
    install(PROGRAMS ${TESSEL_PDGEN} DESTINATION ${CMAKE_INSTALL_BINDIR} RENAME pdgen COMPONENT tools)
endif()
install(DIRECTORY ${TS_ROOT}/catalogue ${TS_ROOT}/driver generator/templates DESTINATION ${data} COMPONENT tools
    FILES_MATCHING PATTERN *.toml PATTERN *.mustache PATTERN "browse/*" PATTERN README.md)
install(FILES
    ${TS_GENERATED}/reference/catalogue.json
    ${TS_GENERATED}/reference/catalogue.schema.json ${PROJECT_SOURCE_DIR}/shell/shell.schema.json
    ${TS_GENERATED}/reference/functions.json
    ${TS_GENERATED}/reference/functions.schema.json
    DESTINATION ${data} COMPONENT tools)
install(FILES shell/completion/tessel-shell generator/completion/pdgen
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)

# Documents, in the same places to each other as in the source tree.
install(FILES README.md CHANGELOG.md SECURITY.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation FILES_MATCHING PATTERN *.md)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation USE_SOURCE_PERMISSIONS)
install(DIRECTORY ${TS_GENERATED}/reference DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation
    PATTERN *.json EXCLUDE)

include(cmake/manual_pages.cmake)
if(PROJECT_IS_TOP_LEVEL)
    include(cmake/packages.cmake)
endif()
