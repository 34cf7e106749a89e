// Which entries of a table are wanted: those whose key agrees with given fields and is no less exact there.
#pragma once

#include <string_view>
#include <vector>

#include "entry_reader.h"
#include "options.h"
#include "records.h"

namespace shell {

class EntryFilter {
public:
    // Takes what is left of the words: fields, each with a mask or prefix if that is wanted, and options.
    EntryFilter(Words &words, const reflection::TableFunctions &table);

    // Of the entry that was read last.
    bool wants(const EntryReader &entry) const;

private:
    struct Bits {
        Value value;
        Value mask;
    };

    static bool agrees(const pd::Field &field, const Bits &wanted, const std::byte *key);

    const pd::Table &table_;
    std::vector<Bits> wanted_; // of each field
    Options options_;
};

} // namespace shell
