// The entries of a digest as records with fields, so that they read and print like the keys of tables.
#pragma once

#include <string>
#include <vector>

#include "records.h"
#include "rows.h"
#include "shown.h"

namespace shell {

class DigestForm {
public:
    explicit DigestForm(const pd::Digest &digest);
    DigestForm(const DigestForm &) = delete;
    DigestForm &operator=(const DigestForm &) = delete;

    Record new_record() const { return {row_, KeyOf::message}; }
    // Appends the entry, its fields big-endian.
    void pack(const Record &record, std::vector<u8> &to) const;

    const std::vector<ShownField> &fields() const { return shown_; }
    // The record of an entry, to print with the fields.
    std::vector<u64> unpack(u8 *entry) const;

private:
    const pd::Digest &digest_;
    std::vector<pd::Field> fields_;
    pd::Table row_{};
    std::vector<ShownField> shown_;
};

} // namespace shell
