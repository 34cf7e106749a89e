#pragma once

#include "any_driver.h"

// What the driver does for any operation.
using Answer = u64 (*)(unsigned operation, const tap::Value *values);
extern Answer answer;
