# Finds cJSON, of the ABI that is being built, as the target ts_cjson.
include(CheckCSourceCompiles)
find_path(CJSON_INCLUDE_DIR cjson/cJSON.h)
find_library(CJSON_LIBRARY cjson)
if(CJSON_INCLUDE_DIR AND CJSON_LIBRARY)
    set(CMAKE_REQUIRED_INCLUDES ${CJSON_INCLUDE_DIR})
    set(CMAKE_REQUIRED_LIBRARIES ${CJSON_LIBRARY})
    check_c_source_compiles("
        #include <cjson/cJSON.h>
        int main(void) { return cJSON_Version() == 0; }" CJSON_LINKS)
    unset(CMAKE_REQUIRED_INCLUDES)
    unset(CMAKE_REQUIRED_LIBRARIES)
endif()
if(NOT CJSON_LINKS)
    unset(CJSON_LINKS CACHE) # so that the next run, with the package, looks again
    message(FATAL_ERROR "cJSON for this ABI is missing. On Debian it is in libcjson-dev, for another architecture "
        "libcjson-dev:ARCH; elsewhere name it with CJSON_INCLUDE_DIR and CJSON_LIBRARY.")
endif()
add_library(ts_cjson INTERFACE)
target_include_directories(ts_cjson INTERFACE ${CJSON_INCLUDE_DIR})
target_link_libraries(ts_cjson INTERFACE ${CJSON_LIBRARY})
