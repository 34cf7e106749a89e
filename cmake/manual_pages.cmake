# Manual pages, made from what the programs say themselves under --help, and from the text of tap.h.
find_package(Python3 COMPONENTS Interpreter)
if(NOT Python3_FOUND)
    message(STATUS "No manual pages: they are made with Python 3, which is not here")
    return()
endif()
set(maker ${PROJECT_SOURCE_DIR}/scripts/manual_page)

# ts_manual_page(<page> <component> <depends> <words of the maker...>)
function(ts_manual_page page component depends)
    string(REGEX REPLACE ".*\\." "" section ${page})
    set(file ${PROJECT_BINARY_DIR}/manual/${page})
    add_custom_command(OUTPUT ${file}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/manual
        COMMAND ${Python3_EXECUTABLE} ${maker} --version ${PROJECT_VERSION} -o ${file} ${page} ${ARGN}
        DEPENDS ${maker} ${depends}
        COMMENT "Writing the manual page ${page}"
        VERBATIM)
    add_custom_target(manual_${page} ALL DEPENDS ${file})
    install(FILES ${file} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section} COMPONENT ${component})
endfunction()

ts_manual_page(libtessel_tap.3 development ${PROJECT_SOURCE_DIR}/tap/tap.h
    --header ${PROJECT_SOURCE_DIR}/tap/tap.h)
if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
    message(STATUS "No manual pages of programs: these do not run here")
    return()
endif()
ts_manual_page(pdgen.1 tools pdgen "--about=checks the catalogue and writes what follows from it" $<TARGET_FILE:pdgen>)
if(TS_BUILD_SHELL)
    ts_manual_page(tessel-shell.1 tools tessel-shell
        "--about=shell over the tables of tessel_switch" --command explain --command replay --command api
        $<TARGET_FILE:tessel-shell>)
endif()
