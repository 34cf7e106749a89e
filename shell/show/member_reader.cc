#include "member_reader.h"

#include "driver.h"

namespace shell {

void MemberReader::read(pd_mbr_hdl member)
{
    expect_success(
        profile_.get_member(driver_session, device.device_id, member, from_hardware_, &action_.out()));
}

} // namespace shell
