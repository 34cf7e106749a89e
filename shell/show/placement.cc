#include "placement.h"

#include "driver.h"
#include "model.h"

namespace shell {

Placement::Placement(pd_status (*get)(pd_word, pd_word), u32 object)
{
    expect_model();
    ts_model_plcmt_request request{device.device_id, object, nullptr};
    expect_success(get(reinterpret_cast<pd_word>(&request), 0));
    data_ = request.data;
}

Placement::~Placement()
{
    ts_model_free_plcmt_data(data_);
}

} // namespace shell
