// Entries and cells as words name them: by key, by handle or by index.
#pragma once

#include <optional>

#include "options.h"
#include "records.h"
#include "reflection.h"
#include "words.h"

namespace shell {

// Whether a word that may be an entry's handle or the beginning of its key is the former.
bool is_handle(std::string_view word);

// The key of an entry, up to the colon or the end, with the options that stand among it.
Record take_key(Words &words, const pd::Table &table, Options &options);
// BadLine when the table needs a priority that was not given.
void expect_priority(const Options &options, const Words &words, const pd::Table &table);

// A cell of a counter, meter or table: one of an indexed resource, or that of an entry.
class Cell {
public:
    // Takes words up to the colon or the end: an index where `table` is null, else a handle, "default" or a
    // key, and the options that stand with it. `owner` is what messages name.
    Cell(Words &words, const char *owner, const reflection::TableFunctions *table, Options &options);

    // The index or handle. Throws BadLine when the driver refuses.
    u32 find() const;
    // Likewise, but 0 where there is none of the key.
    u32 find_if_any() const;

private:
    const reflection::TableFunctions *table_;
    bool is_default_ = false;
    u32 number_ = 0;
    Options key_options_;
    std::optional<Record> key_;
};

} // namespace shell
