// Reads the entries of a table back through the library, one at a time, and walks them in handle order. The
// room that it needs does not grow with the table.
#pragma once

#include <array>
#include <functional>
#include <vector>

#include "json.h"
#include "reflection.h"
#include "shown.h"

namespace shell {

class EntryReader {
public:
    // `table` is a direct one.
    EntryReader(const reflection::TableFunctions &table, bool from_hardware);

    // Each throws BadLine when the driver refuses.
    void read(pd_entry_hdl entry);
    void read_default();
    // Calls `visit` for each entry, read.
    void walk(const std::function<void()> &visit);

    // ---- Of the entry that was read last ----
    pd_entry_hdl handle() const { return handle_; }
    bool is_default() const { return is_default_ != 0; }
    u32 priority() const { return priority_; }
    const void *key() const { return key_.data(); }
    const pd::Action &action() const { return *reflection::actions()[action_.action_number]; }
    const std::vector<ShownField> &parameter_fields() const;
    const void *parameters() const { return &action_.parameters; }

    const pd::Table &table() const { return *functions_.row; }
    const std::vector<ShownField> &key_fields() const { return key_fields_; }

    // The entry as a JSON object, with its key unless it is the default entry.
    void append_json(std::string &to) const;
    // "setNextHop nextHop=7"
    void append_action(std::string &to) const;

private:
    const reflection::TableFunctions &functions_;
    const u8 from_hardware_;
    const std::vector<ShownField> key_fields_;
    std::vector<std::vector<ShownField>> parameter_fields_; // by the table's actions

    pd_entry_hdl handle_ = 0;
    u8 is_default_ = 0;
    u32 priority_ = 0;
    std::vector<u64> key_; // aligned for every member
    pd_action_out action_{};
};

} // namespace shell
