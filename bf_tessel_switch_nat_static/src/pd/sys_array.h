// An array from the system's memory service, zeroed, given back at the end of its scope.
#pragma once

#include "bf_sys.h"
#include "internal.h"
#include "pd_types.h"

namespace TS_INTERNAL pd {

template <typename Element>
class SysArray {
public:
    explicit SysArray(u32 count, u32 element_bytes = sizeof(Element))
        : elements(static_cast<Element *>(bf_sys_calloc(count, element_bytes)))
    {
    }
    SysArray(const SysArray &) = delete;
    ~SysArray()
    {
        if (elements)
            bf_sys_free(elements);
    }

    explicit operator bool() const { return elements != nullptr; }
    Element *get() const { return elements; }
    Element &operator[](u32 index) const { return elements[index]; }

private:
    Element *elements;
};

} // namespace pd
