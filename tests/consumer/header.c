#include <pd.h>

pd_status status_of_a_library(void)
{
    return PD_STATUS_SUCCESS;
}
