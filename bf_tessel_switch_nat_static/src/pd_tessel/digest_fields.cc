// Where the fields of a digest entry lie.
#include <cstring>

#include "failure.h"
#include "pd_services.h"
#include "rows_services.h"
#include "source_name.h"

namespace {

const pd::Digest *find_digest(const char *name)
{
    if (name)
        for (const pd::Digest *digest : pd::digests::all)
            if (std::strcmp(digest->name, name) == 0)
                return digest;
    return nullptr;
}

const pd::DigestField *find_field(const pd::Digest *digest, const char *name)
{
    if (digest)
        for (const pd::DigestField &field : digest->fields)
            if (std::strcmp(field.name, name) == 0)
                return &field;
    return nullptr;
}

} // namespace

void *p4_pd_tessel_switch_get_digest_entry_field(void *entry, const char *digest, const char *field,
                                                 u32 *size)
{
    const pd::DigestField *found = find_field(find_digest(digest), field);
    if (!found)
        pd::fail("0", {__func__, __LINE__}, pd_tessel::source_name);
    *size = found->bytes;
    return static_cast<u8 *>(entry) + found->offset;
}

// Deliberate: here a name that is not known is no failure.
u32 p4_pd_tessel_switch_get_digest_entry_size(const char *digest)
{
    const pd::Digest *found = find_digest(digest);
    return found ? found->entry_bytes : 0;
}
