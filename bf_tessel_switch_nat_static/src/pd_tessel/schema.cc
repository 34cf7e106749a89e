#include "schema.h"

#include "pd_inspection.h"

namespace {

constexpr pd_tessel::Schema nothing{"()", 2};

const pd_tessel::Schema &find_schema(u32 handle)
{
    if (const pd_tessel::TableText *table = pd_tessel::find_table(handle))
        return table->schema;
    if (const pd_tessel::ProfileText *profile = pd_tessel::find_profile(handle))
        return profile->schema;
    return nothing;
}

} // namespace

u32 p4_pd_tessel_switch_cli_schema(u32 handle, char *buf)
{
    return pd_tessel::write_schema(find_schema(handle), buf);
}
