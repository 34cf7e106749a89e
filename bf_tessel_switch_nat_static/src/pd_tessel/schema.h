// The schemas of tables and profiles: finished texts.
#pragma once

#include <cstring>

#include "texts.h"

namespace pd_tessel {

// The caller's buffer is large enough.
inline u32 write_schema(const Schema &schema, char *buf)
{
    std::memcpy(buf, schema.text, schema.length + 1);
    return schema.length;
}

} // namespace pd_tessel
