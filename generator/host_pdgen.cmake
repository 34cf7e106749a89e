# The target pdgen_on_host: a pdgen for the building machine, built beside the one for the target.
include(ExternalProject)
set(folder ${PROJECT_BINARY_DIR}/host)
set(host_compiler "")
if(DEFINED ENV{HOSTCXX})
    set(host_compiler -DCMAKE_CXX_COMPILER=$ENV{HOSTCXX})
endif()
ExternalProject_Add(pdgen_host
    PREFIX ${folder}
    SOURCE_DIR ${PROJECT_SOURCE_DIR}
    BINARY_DIR ${folder}/build
    # What the environment says of compilers and flags is meant for the target.
    CONFIGURE_COMMAND ${CMAKE_COMMAND} -E env --unset=CC --unset=CXX --unset=CFLAGS --unset=CXXFLAGS
        --unset=LDFLAGS --unset=CMAKE_TOOLCHAIN_FILE
        ${CMAKE_COMMAND} -S ${PROJECT_SOURCE_DIR} -B ${folder}/build -G ${CMAKE_GENERATOR}
        -DTS_PDGEN_ONLY=ON -DCMAKE_BUILD_TYPE=Release ${host_compiler}
    BUILD_COMMAND ${CMAKE_COMMAND} --build ${folder}/build --target pdgen
    BUILD_ALWAYS ON
    BUILD_BYPRODUCTS ${folder}/build/bin/pdgen
    INSTALL_COMMAND ""
    LOG_CONFIGURE ON)
add_executable(pdgen_on_host IMPORTED GLOBAL)
set_target_properties(pdgen_on_host PROPERTIES IMPORTED_LOCATION ${folder}/build/bin/pdgen)
add_dependencies(pdgen_on_host pdgen_host)
