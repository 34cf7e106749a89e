// The snapshots of one device.
#pragma once

#include <map>
#include <span>
#include <vector>

#include "status.h"

namespace model {

// Where a snapshot looks.
struct SnapshotPlace {
    u32 device_id;
    u32 pipe;
    u8 first_stage;
    u8 last_stage;
    u32 direction;
};

class Snapshot {
public:
    explicit Snapshot(const SnapshotPlace &place);

    u32 stages() const { return place_.last_stage - place_.first_stage + 1u; }
    std::span<const u8> records() const { return records_; } // of all stages, one after the other
    u32 captured() const { return captured_; }               // up to the last stage that captured
    ts_model_snapshot public_form() const;

    // Both records have the length of a stage's. What has been captured before is dropped.
    void set_trigger(const u8 *spec, const u8 *mask);

    // Refuses a stage that the snapshot does not look at, and more bytes than a stage has.
    pd_status capture(u32 stage, std::span<const u8> bytes);
    void capture_next(std::span<const u8> bytes); // nothing happens where it would be refused

private:
    bool armed() const { return !spec_.empty(); }

    SnapshotPlace place_;
    std::vector<u8> spec_;
    std::vector<u8> mask_;
    std::vector<u8> records_;
    u32 captured_ = 0;
};

class Snapshots {
public:
    pd_status create(const SnapshotPlace &place, u32 &handle);
    pd_status remove(u32 handle);
    Snapshot *find(u32 handle); // null when there is none

    // A counted look-up: every armed snapshot that has a stage left keeps the key in the next one.
    void capture_key(std::span<const u8> key);

    // The part of a handle that names its device.
    static u32 device_of(u32 handle) { return handle >> device_shift; }

private:
    static constexpr u32 direction_shift = 1;
    static constexpr u32 number_shift = 2;
    static constexpr u32 device_shift = 24;

    std::map<u32, Snapshot> snapshots_; // by handle
    u32 last_number_ = 0;
};

} // namespace model
