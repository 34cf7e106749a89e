// Reads the entries of a table back through the library, one at a time, and walks them in handle order. The
// room that it needs does not grow with the table.
#pragma once

#include <functional>
#include <vector>

#include "names.h"
#include "reflection.h"
#include "shown.h"
#include "shown_action.h"

namespace shell {

class EntryReader {
public:
    // `names`: of the table's action profile; null where entries carry their action.
    EntryReader(const reflection::TableFunctions &table, bool from_hardware, const ProfileNames *names);

    // Each throws BadLine when the driver refuses.
    void read(pd_entry_hdl entry);
    void read_default();
    // From the placement data of `entry`: what software placed.
    void read_placement(pd_entry_hdl entry, void *plcmt_data);
    // False when the copy that is read lacks the entry.
    bool read_if_there(pd_entry_hdl entry);
    // Calls `visit` for each entry, read.
    void walk(const std::function<void()> &visit);
    // Likewise, and `lacks` for each that the copy lacks: only handle() tells of it.
    void walk(const std::function<void()> &visit, const std::function<void()> &lacks);

    // ---- Of the entry that was read last ----
    pd_entry_hdl handle() const { return handle_; }
    bool is_default() const { return is_default_ != 0; }
    u32 priority() const { return priority_; }
    const void *key() const { return key_.data(); }
    // One of the two, as the table has it.
    const ShownAction &action() const { return action_; }
    Object reference() const;

    const pd::Table &table() const { return *functions_.row; }
    const ProfileNames *names() const { return names_; }
    const std::vector<ShownField> &key_fields() const { return key_fields_; }

    // The table; handle, key and priority, unless it is the default entry; what it does.
    void tell(Result &to) const;
    // As "key" and, where the table has one, "priority".
    void tell_key(Result &to) const;
    // The sentence of what it does.
    const char *body() const { return names_ ? "{points at}" : "{action} {parameters}"; }
    // The command that adds it, but for meter and time to live.
    std::string command() const;
    // "dmac=00:11:22:33:44:55 priority=10"
    void append_key(std::string &to) const;
    // "setNextHop nextHop=7", "group web"
    void append_body(std::string &to) const;
    std::string body_text() const;

private:
    reflection::EntryResults results();
    pd_status try_read(pd_entry_hdl entry);
    void walk_entries(const std::function<void(pd_entry_hdl)> &visit) const;

    const reflection::TableFunctions &functions_;
    const u8 from_hardware_;
    const ProfileNames *const names_;
    const std::vector<ShownField> key_fields_;

    pd_entry_hdl handle_ = 0;
    u8 is_default_ = 0;
    u32 priority_ = 0;
    std::vector<u64> key_; // aligned for every member
    ShownAction action_;
    reflection::ReferenceResults reference_;
};

} // namespace shell
