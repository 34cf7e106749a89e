// What a caller has to get back, worked out one bit at a time: from the images that a driver gives, and from
// the record that was once written. As slow as the encoder, and as far from the library's arithmetic.
#pragma once

#include <vector>

#include "pipe_mgr.h"
#include "rows.h"

namespace decoder {

// Writes the plain fields of a key into the record `key`, and nothing else.
void decode_values(u8 *key, const pd::Table &table, const u8 *value, u32 partition_index);

// Writes the masks or the prefix length.
void decode_masks(u8 *key, const pd::Table &table, const u8 *mask);

// Writes into the zeroed record `key` all that comes back of the written record `from`.
void read_back_key(u8 *key, const pd::Table &table, const void *from);

// Writes into the zeroed record `parameters` what comes back of the written record `from` when the entry has
// the resources of `list` attached.
void read_back_parameters(u8 *parameters, const pd::Action &action, const void *from,
                          const std::vector<pd_res_ref> &list);

} // namespace decoder
