/**
 * @file pd_version.h
 * @brief Which version of the library these headers belong to.
 *
 * docs/abi.md tells what a version promises. The library itself exports no such thing; ts_model_version and
 * ts_tap_version tell what was loaded beside it, and the soname changes with PD_ABI.
 */
#ifndef PD_VERSION_H
#define PD_VERSION_H

/** The first number of the version. */
#define PD_VERSION_MAJOR 0
/** The second number. */
#define PD_VERSION_MINOR 1
/** The third number. */
#define PD_VERSION_PATCH 0

/** As in "0.1.0". */
#define PD_VERSION                                                                                           \
    PD_VERSION_TEXT(PD_VERSION_MAJOR)                                                                        \
    "." PD_VERSION_TEXT(PD_VERSION_MINOR) "." PD_VERSION_TEXT(PD_VERSION_PATCH)
#define PD_VERSION_TEXT(number) PD_VERSION_TEXT_OF(number) /**< a macro's number as text */
#define PD_VERSION_TEXT_OF(number) #number                 /**< a number as text */

/** To compare with in `#if PD_VERSION_NUMBER >= PD_VERSION_MAKE(0, 1, 0)`. */
#define PD_VERSION_MAKE(major, minor, patch) ((major)*1000000 + (minor)*1000 + (patch))
/** The version as a number. */
#define PD_VERSION_NUMBER PD_VERSION_MAKE(PD_VERSION_MAJOR, PD_VERSION_MINOR, PD_VERSION_PATCH)

/** The number in the sonames. A program runs with any library that has the one it was built with. */
#define PD_ABI 0

#endif
