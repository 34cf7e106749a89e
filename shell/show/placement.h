// The driver's placement data of an entry or member: what software placed, for as long as this object lives.
#pragma once

#include "pd_types.h"

namespace shell {

class Placement {
public:
    // `get`: the function of the table or profile. Throws BadLine when the driver refuses.
    Placement(pd_status (*get)(pd_word, pd_word), u32 object);
    ~Placement();
    Placement(const Placement &) = delete;
    Placement &operator=(const Placement &) = delete;

    void *data() const { return data_; }

private:
    void *data_;
};

} // namespace shell
