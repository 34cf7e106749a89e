// The statuses of model.h with the type that operations return.
#pragma once

#include "model.h"

namespace model {

constexpr pd_status ok = TS_MODEL_OK;
constexpr pd_status bad_argument = TS_MODEL_BAD_ARGUMENT;
constexpr pd_status unknown_object = TS_MODEL_UNKNOWN_OBJECT;
constexpr pd_status already_exists = TS_MODEL_ALREADY_EXISTS;
constexpr pd_status no_space = TS_MODEL_NO_SPACE;
constexpr pd_status in_use = TS_MODEL_IN_USE;

} // namespace model
