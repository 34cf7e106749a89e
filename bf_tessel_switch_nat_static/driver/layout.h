/**
 * @file layout.h
 * @brief Compile-time checks of records whose layout is a wire format.
 *
 * The stated offsets and sizes are those of the i386 build; the LP64 build lays the same declarations out
 * by the platform's rules, and there the checks hold trivially.
 */
#ifndef PD_DRIVER_LAYOUT_H
#define PD_DRIVER_LAYOUT_H

#include <assert.h>
#include <stddef.h>

/** Requires `field` to lie at byte `at` of `record`. */
#define PD_OFFSET(record, field, at)                                                                         \
    static_assert(sizeof(void *) != 4 || offsetof(record, field) == (at), #record "." #field " moved")

/** Requires `record` to be `bytes` long. */
#define PD_SIZE(record, bytes)                                                                               \
    static_assert(sizeof(void *) != 4 || sizeof(record) == (bytes), #record " changed its size")

#endif
