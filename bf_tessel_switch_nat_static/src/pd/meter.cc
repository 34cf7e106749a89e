#include "meter.h"

#include "failure.h"

namespace pd {

u32 get_bytes_meter_type(u32 requested_meter_type, u8 has_pre_color)
{
    constexpr Place here{__func__, __LINE__};
    if (requested_meter_type > PD_METER_TYPE_COLOR_UNAWARE)
        PD_ASSERT_OR_STATUS("0", "0", here);
    else if (requested_meter_type == PD_METER_TYPE_COLOR_AWARE && !has_pre_color)
        PD_ASSERT_OR_STATUS("has_pre_color == 1", "has_pre_color == true", here);
    // Deliberate: with debug mode off a request of 2 and above ends as colour aware.
    if (!has_pre_color || requested_meter_type == PD_METER_TYPE_COLOR_UNAWARE)
        return PD_METER_TYPE_COLOR_UNAWARE;
    return PD_METER_TYPE_COLOR_AWARE;
}

} // namespace pd
