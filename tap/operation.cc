#include "operation.h"

#include <cstring>

namespace tap {

unsigned find_operation(const char *name)
{
    unsigned at = 0;
    while (at < operation_count && std::strcmp(operations()[at].name, name) != 0)
        ++at;
    return at;
}

} // namespace tap
