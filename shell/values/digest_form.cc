#include "digest_form.h"

#include "pd_services.h"

namespace shell {

namespace {

// Behind the name of the header or metadata that the field is in.
const char *display_name(const char *name)
{
    for (const char *end : {"Md_", "md_"})
        if (const auto at = std::string_view{name}.find(end); at != std::string_view::npos)
            return name + at + std::string_view{end}.size();
    return name;
}

} // namespace

DigestForm::DigestForm(const pd::Digest &digest) : digest_(digest)
{
    for (const pd::DigestField &field : digest.fields) {
        pd::Field row{};
        row.name = field.name;
        row.display = display_name(field.name);
        row.offset = static_cast<u16>(fields_.size() * sizeof(u64));
        row.width = static_cast<u8>(field.bytes * 8);
        fields_.push_back(row);
    }
    // The halves of a MAC address fill three of their four bytes.
    for (std::size_t i = 0; i + 1 < fields_.size(); ++i)
        if (!mac_name(fields_[i].display, fields_[i + 1].display).empty())
            for (pd::Field *half : {&fields_[i], &fields_[i + 1]}) {
                half->width = mac_width / 2;
                half->format = pd::Format::mac;
            }
    row_.name = digest.name;
    row_.key = fields_;
    row_.record_size = static_cast<u16>(fields_.size() * sizeof(u64));
    shown_ = shown_fields(row_);
}

void DigestForm::pack(const Record &record, std::vector<u8> &to) const
{
    const auto *members = static_cast<const u8 *>(record.data());
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        const u32 bytes = digest_.fields[i].bytes;
        to.resize(to.size() + bytes);
        write_image(load(fields_[i].width, members + fields_[i].offset), bytes * 8,
                    to.data() + to.size() - bytes);
    }
}

std::vector<u64> DigestForm::unpack(u8 *entry) const
{
    std::vector<u64> record(fields_.size());
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        u32 size = 0;
        const auto *bytes = static_cast<const u8 *>(
            p4_pd_tessel_switch_get_digest_entry_field(entry, digest_.name, fields_[i].name, &size));
        u64 value = 0;
        for (u32 at = 0; at < size; ++at)
            value = value << 8 | bytes[at];
        store({0, value}, fields_[i].width, &record[i]);
    }
    return record;
}

} // namespace shell
