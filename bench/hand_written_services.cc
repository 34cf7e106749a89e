#include "hand_written_services.h"

#include <cstring>

#include "bf_snapshot.h"

namespace hand_written {

namespace {

inline void swap_two(u8 *field)
{
    u16 value;
    std::memcpy(&value, field, sizeof value);
    value = __builtin_bswap16(value);
    std::memcpy(field, &value, sizeof value);
}

inline void swap_four(u8 *field)
{
    u32 value;
    std::memcpy(&value, field, sizeof value);
    value = __builtin_bswap32(value);
    std::memcpy(field, &value, sizeof value);
}

// Straight-line code, one swap for each place.
template <typename... Places>
[[gnu::always_inline]] inline void swap_two_at(u8 *record, Places... places)
{
    (swap_two(record + places), ...);
}

template <typename... Places>
[[gnu::always_inline]] inline void swap_four_at(u8 *record, Places... places)
{
    (swap_four(record + places), ...);
}

void swap_layout_a(u8 *record)
{
    swap_two_at(record, 1, 5, 26, 29, 32, 39, 42, 44, 46, 48, 56, 58, 64, 66, 69, 71, 73, 91, 102, 104, 106,
                114, 142, 161, 163, 165, 167, 217, 228, 230, 232, 240, 268, 287, 289, 302, 304, 306, 308, 320,
                322, 333, 336, 339, 342, 345, 363, 365, 367, 369, 371, 374, 376, 388, 395, 398, 407, 409, 412,
                417, 419, 423, 425, 428, 433, 435, 437, 444, 446, 448, 450, 452, 454, 456, 470, 472, 522, 526,
                529, 533, 536, 549, 552, 559, 566, 570, 572, 582, 584, 593, 601, 604, 624, 627, 629, 638, 641,
                645, 654, 664, 666);
    swap_four_at(record, 11, 18, 22, 75, 79, 83, 87, 93, 110, 136, 197, 201, 205, 209, 213, 219, 236, 262,
                 291, 298, 349, 353, 380, 384, 391, 440, 464, 474, 478, 483, 541, 545, 562, 578, 609, 616,
                 620);
}

void swap_layout_b(u8 *record)
{
    swap_two_at(record, 5, 20, 23, 26, 33, 36, 38, 40, 42, 50, 53, 56, 60, 62, 69, 73, 76, 94, 96, 98, 109,
                111, 113, 121, 125, 127, 190, 201, 203, 205, 213, 241, 260, 273, 275, 279, 281, 292, 295, 298,
                301, 304, 307, 319, 321, 324, 326, 331, 347, 349, 352, 358, 361, 363, 365, 371);
    swap_four_at(record, 0, 12, 16, 78, 82, 86, 90, 100, 117, 174, 178, 182, 186, 192, 209, 235, 262, 269,
                 311, 315, 342, 367);
}

} // namespace

pd_status set_trigger(u32 snapshot, const pd_snapshot_phv *spec, const pd_snapshot_phv *mask)
{
    u8 spec_copy[709];
    u8 mask_copy[709];
    std::memcpy(spec_copy, spec->bytes, sizeof spec_copy);
    std::memcpy(mask_copy, mask->bytes, sizeof mask_copy);
    if (snapshot & 2) {
        swap_layout_b(spec_copy);
        swap_layout_b(mask_copy);
    } else {
        swap_layout_a(spec_copy);
        swap_layout_a(mask_copy);
    }
    return bf_snapshot_capture_trigger_set(snapshot, spec_copy, mask_copy);
}

} // namespace hand_written
