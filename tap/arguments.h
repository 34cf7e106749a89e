// The arguments and results of a recorded call by their names, as far as an operation that changes something
// has them: numbers and the records of entries. Images point into the call's body.
#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "encoding.h"
#include "pipe_mgr_records.h"
#include "record_reader.h"

namespace tap {

class Arguments {
public:
    explicit Arguments(const RecordedCall &call);

    // Whether all was there. Behind an argument of a kind that is not kept here nothing is.
    bool ok() const { return ok_; }
    // 0 for a name that no number has, and for a result that was not given.
    u64 number(std::string_view name) const;
    u32 word(std::string_view name) const { return static_cast<u32>(number(name)); }

    // No operation has two of these.
    pd_dev_target target{};
    pipe_match_spec match{};
    pipe_action_spec action{};
    pipe_meter_spec meter{};
    pipe_stat_data counts{};
    pipe_idle_params idle{};
    pipe_pvs_property_value property{};
    pipe_pvs_property_args property_args{};
    pipe_stful_value value{};
    std::vector<pipe_res_spec> resources;
    std::vector<pipe_hash_calc_input_field_attribute> attributes;
    bool has_value = false; // a register's value may be left out

private:
    void take(Cursor &from, const ArgumentRow &row);

    std::vector<std::pair<std::string_view, u64>> numbers_;
    bool ok_ = true;
};

} // namespace tap
