#include <algorithm>

#include "checker.h"

namespace pdgen {

namespace {

constexpr HandleRange counter_handles{"counter", 0x4000001, 0x4ffffff};
constexpr HandleRange meter_handles{"meter", 0x5000001, 0x5ffffff};
constexpr HandleRange register_handles{"register", 0x6000001, 0x6ffffff};
constexpr HandleRange hash_handles{"hash", 0x8000000, 0x8ffffff};
constexpr HandleRange digest_handles{"digest", 0x9000000, 0x9ffffff};
constexpr HandleRange value_set_handles{"value set", 1, 511};
constexpr HandleRange hash_input_handles{"hash input", 0x21000000, 0x21ffffff};
constexpr HandleRange hash_algorithm_handles{"hash algorithm", 0x23000000, 0x23ffffff};

} // namespace

template <typename Rows>
void Checker::check_resource_rows(const HandleRange &range, const Rows &rows)
{
    for (const Resource &resource : rows) {
        check_name(range.kind, resource.name, resource.place);
        check_handle(range, resource.name + ".handle", resource.handle, resource.place);
    }
}

void Checker::check_resources()
{
    check_resource_rows(counter_handles, catalogue.counters);
    check_resource_rows(meter_handles, catalogue.meters);
    check_resource_rows(register_handles, catalogue.registers);
    for (const Resource &meter : catalogue.meters)
        if (names.contains("counter " + meter.name))
            wrong(meter.place, meter.name + ".name", "a counter has this name already");
}

void Checker::check_services()
{
    check_resource_rows(digest_handles, catalogue.digests);
    check_resource_rows(value_set_handles, catalogue.value_sets);
    check_resource_rows(hash_handles, catalogue.hashes);
    for (const Digest &digest : catalogue.digests)
        check_digest(digest);
    for (const Hash &hash : catalogue.hashes) {
        check_handle(hash_input_handles, hash.name + ".input", hash.input, hash.place);
        check_handle(hash_algorithm_handles, hash.name + ".algorithm", hash.algorithm, hash.place, false);
    }
}

void Checker::check_digest(const Digest &digest)
{
    std::set<std::string> fields;
    for (const DigestField &field : digest.fields) {
        const std::string subject = digest.name + "." + field.name;
        check_identifier(field.place, subject, field.name, false);
        if (!fields.insert(field.name).second)
            wrong(field.place, subject, "this field stands twice");
        if (field.bytes < 1)
            wrong(field.place, subject + ".bytes", "must not be 0");
    }
}

void Checker::check_snapshots()
{
    for (const SnapshotLayout &layout : catalogue.snapshots) {
        check_name("snapshot layout", layout.name, layout.place);
        std::set<unsigned> taken;
        check_places(layout, layout.two_bytes, 2, taken);
        check_places(layout, layout.four_bytes, 4, taken);
    }
}

void Checker::check_places(const SnapshotLayout &layout, const std::vector<unsigned> &offsets, unsigned bytes,
                           std::set<unsigned> &taken)
{
    const std::string subject = layout.name + (bytes == 2 ? ".two_bytes" : ".four_bytes");
    if (!std::is_sorted(offsets.begin(), offsets.end()))
        wrong(layout.place, subject, "must ascend");
    for (unsigned offset : offsets) {
        if (offset + bytes > catalogue.snapshot_bytes) {
            wrong(layout.place, subject, "the field at ", offset, " reaches beyond the record's ",
                  catalogue.snapshot_bytes, " bytes");
            break; // so do those behind it
        }
        bool fresh = true;
        for (unsigned byte = offset; byte < offset + bytes; ++byte)
            fresh &= taken.insert(byte).second;
        if (!fresh)
            wrong(layout.place, subject, "the field at ", offset, " lies over another one");
    }
}

} // namespace pdgen
