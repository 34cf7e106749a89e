# Takes the version out of pd_version.h: TS_VERSION and TS_ABI.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
    ${CMAKE_CURRENT_SOURCE_DIR}/bf_tessel_switch_nat_static/include/pd_version.h)
file(STRINGS bf_tessel_switch_nat_static/include/pd_version.h TS_VERSION REGEX "^#define PD_VERSION_[A-Z]+ [0-9]+$")
list(TRANSFORM TS_VERSION REPLACE ".* " "")
list(JOIN TS_VERSION "." TS_VERSION)
file(STRINGS bf_tessel_switch_nat_static/include/pd_version.h TS_ABI REGEX "^#define PD_ABI [0-9]+$")
string(REPLACE "#define PD_ABI " "" TS_ABI "${TS_ABI}")
