// The schemas of tables and profiles: finished texts.
#pragma once

#include <cstring>

#include "internal.h"
#include "texts.h"

namespace TS_INTERNAL pd_tessel {

// The caller's buffer is large enough.
inline u32 write_schema(const Schema &schema, char *buf)
{
    std::memcpy(buf, schema.text, schema.length + 1);
    return schema.length;
}

// Of a table or a profile.
template <typename Text>
u32 schema(const Text &text, char *buf)
{
    return write_schema(text.schema, buf);
}

} // namespace pd_tessel
