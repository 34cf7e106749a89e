// The system's memory, for the functions of the library that need some.
#include <cstdlib>

#include "bf_sys.h"

void *bf_sys_calloc(size_t count, size_t size)
{
    return std::calloc(count, size);
}

void bf_sys_free(void *memory)
{
    std::free(memory);
}
