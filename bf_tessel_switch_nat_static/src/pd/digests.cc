#include "digests.h"

// One setting for all digests of the device.
pd_status p4_pd_tessel_switch_set_learning_timeout(pd_sess_hdl sess, u8 dev_id, u32 timeout)
{
    return pipe_mgr_flow_lrn_set_timeout(sess, dev_id, timeout);
}
