// The images of keys and actions: their fields big-endian, one behind the other, each in whole bytes.
#pragma once

#include <vector>

#include "rows.h"
#include "values.h"

namespace shell {

struct KeyImages {
    std::vector<u8> value;
    std::vector<u8> mask;
};

// The bits of a field that the entry with this key compares.
Value mask_of(const pd::Field &field, const void *key);

KeyImages key_images(const pd::Table &table, const void *key);
// The mask of a key all of whose bits count.
std::vector<u8> full_mask(const pd::Table &table);
std::vector<u8> action_image(const pd::Action &action, const void *parameters);

} // namespace shell
