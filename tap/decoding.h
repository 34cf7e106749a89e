// The driver's records out of the bytes of a recorded call. Their images point into those bytes and live as
// long.
#pragma once

#include "callbacks.h"
#include "encoding.h"
#include "pipe_mgr_records.h"

namespace tap {

// Whether something was there at a place that a pointer named.
inline bool get_presence(Cursor &from)
{
    return from.number() != 0;
}

void get_record(Cursor &from, pd_dev_target &target);
void get_record(Cursor &from, pipe_idle_params &params);
void get_record(Cursor &from, pipe_pvs_property_value &value);
void get_record(Cursor &from, pipe_pvs_property_args &args);
void get_record(Cursor &from, pipe_match_spec &match);
void get_record(Cursor &from, pipe_action_data &data);
void get_record(Cursor &from, pipe_action_spec &spec);
void get_record(Cursor &from, pipe_meter_spec &meter);
void get_record(Cursor &from, pipe_wred_spec &wred);
void get_record(Cursor &from, pipe_stful_value &value);
void get_record(Cursor &from, pipe_res_spec &resource);
void get_record(Cursor &from, pipe_stat_data &counts);
void get_record(Cursor &from, pipe_hash_calc_input_field_attribute &attribute);
// The callbacks are those of the recorded process: null or not is all that can be made of them.
void get_record(Cursor &from, pd_drv_client_callbacks &client);

// Of a query the number of its elements, and whether they follow, each a pipe_stful_value.
bool get_query(Cursor &from, u32 &count);

// Null for no text.
const char *get_text(Cursor &from, std::size_t &length);

// Passes over what an out value's place said before the call; false when there was none.
bool get_room(Cursor &from, Kind kind, u32 &room);

} // namespace tap
