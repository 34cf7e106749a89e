#include "labels.h"

#include <cstdio>

#include "entry_record.h"
#include "image.h"
#include "pd_inspection.h"

namespace pd_tessel {

namespace {

u32 load(const void *key, u8 width, u16 offset)
{
    return value_of({nullptr, ones(32), offset, width}, key);
}

const u8 *bytes_at(const void *key, u16 offset)
{
    return static_cast<const u8 *>(key) + offset;
}

int write_flag(const Label &label, u32 value, u32 mask, char *buf)
{
    if ((mask & 1) == 0)
        return 0;
    return std::sprintf(buf, "%s%s", value & mask & 1 ? "" : "!", label.text);
}

const LabelName *find_name(const Label &label, u32 value, u32 mask)
{
    if ((mask & label.names_if) != 0)
        for (const LabelName &name : label.names)
            if ((value & mask & label.name_bits) == name.value)
                return &name;
    return nullptr;
}

// The mask is compared as it stands.
int write_number(const Label &label, u32 value, u32 mask, char *buf)
{
    if (mask == 0)
        return 0;
    if (const LabelName *name = find_name(label, value, mask))
        return std::sprintf(buf, "%s", name->text);
    if (mask == label.full)
        return std::sprintf(buf, "%s 0x%0*x ", label.text, label.digits, value & label.bits);
    return std::sprintf(buf, "%s & 0x%x 0x%0*x ", label.text, mask, label.digits, value & label.bits);
}

int write_label(const Label &label, const void *key, char *buf)
{
    const auto field = [&](u16 offset) { return load(key, label.width, offset); };
    switch (label.kind) {
    case LabelKind::always:
        return std::sprintf(buf, "%s 0x%0*x ", label.text, label.digits, field(label.offset) & label.bits);
    case LabelKind::flag:
        return write_flag(label, field(label.offset), field(label.mask_offset), buf);
    case LabelKind::number:
        return write_number(label, field(label.offset), field(label.mask_offset), buf);
    case LabelKind::v4addr:
        return static_cast<int>(p4_pd_tessel_switch__print_v4addr_ternary(
            buf, label.text, field(label.offset), field(label.mask_offset)));
    case LabelKind::v6addr:
        return static_cast<int>(p4_pd_tessel_switch__print_v6addr_ternary(
            buf, label.text, bytes_at(key, label.offset), bytes_at(key, label.mask_offset)));
    case LabelKind::mac:
        return static_cast<int>(p4_pd_tessel_switch__print_mac_ternary(
            buf, label.text, field(label.offset), field(label.mask_offset), field(label.second_offset),
            field(label.second_mask_offset)));
    }
    return 0;
}

} // namespace

u32 match_spec_stringify(const TableText &table, const void *key, char *buf)
{
    char *to = buf;
    for (const Label &label : table.labels)
        to += write_label(label, key, to);
    return static_cast<u32>(to - buf);
}

u32 stringify_counter(const TableText &table, pd_sess_hdl sess, u8 device_id, pd_entry_hdl entry, char *buf)
{
    EntryRecord record(table);
    if (read_entry(table, sess, device_id, entry, 1, record) != 0)
        return 0;
    return match_spec_stringify(table, record.key, buf);
}

} // namespace pd_tessel

u32 p4_pd_tessel_switch_stringify_counter_matchspec(pd_sess_hdl sess, u8 dev_id, u32 table,
                                                    pd_entry_hdl entry_hdl, char *buf)
{
    const pd_tessel::TableText *found = pd_tessel::find_table(table);
    return found && !found->labels.empty() ? stringify_counter(*found, sess, dev_id, entry_hdl, buf) : 0;
}
