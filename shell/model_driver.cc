#include "model_driver.h"

#include <dlfcn.h>
#include <link.h>

#include "model.h"
#include "operation.h"
#include "tap.h"

namespace shell {

namespace {

// The library that a symbol lies in.
template <typename Symbol>
const void *library_of(Symbol *symbol)
{
    Dl_info info{};
    return symbol && dladdr(reinterpret_cast<const void *>(symbol), &info) ? info.dli_fbase : nullptr;
}

// The first library behind the tap, or before it, that defines the operation.
const void *driver_of(const char *operation)
{
    const void *const tap = library_of(&ts_tap_record);
    link_map *first = nullptr;
    dlinfo(dlopen(nullptr, RTLD_LAZY), RTLD_DI_LINKMAP, &first);
    for (const link_map *map = first; map; map = map->l_next) {
        void *const library = dlopen(map->l_name, RTLD_LAZY | RTLD_NOLOAD);
        const void *const found = library ? library_of(dlsym(library, operation)) : nullptr;
        const bool defines = found && found == reinterpret_cast<const void *>(map->l_addr);
        if (defines && found != tap)
            return found;
    }
    return nullptr;
}

} // namespace

bool calls_reach_the_model()
{
    const void *const model = library_of(&ts_model_reset);
    for (const tap::OperationRow &operation : tap::operations())
        if (driver_of(operation.name) != model)
            return false;
    return true;
}

} // namespace shell
