#include "driver.h"

#include <dlfcn.h>

#include "model.h"
#include "words.h"

namespace shell {

namespace {

const char *meaning(pd_status status)
{
    switch (status) {
    case TS_MODEL_NO_MEMORY:
        return "out of memory";
    case TS_MODEL_BAD_ARGUMENT:
        return "bad argument";
    case TS_MODEL_UNKNOWN_OBJECT:
        return "no such object";
    case TS_MODEL_ALREADY_EXISTS:
        return "already exists";
    case TS_MODEL_NO_SPACE:
        return "no space";
    case TS_MODEL_IN_USE:
        return "still in use";
    default:
        return "unknown reason";
    }
}

} // namespace

bool has_model()
{
    static const bool has = dlsym(RTLD_DEFAULT, "ts_model_reset") != nullptr;
    return has;
}

void expect_model()
{
    if (!has_model())
        throw BadLine{{}, "this needs the model, which is not in this process"};
}

void expect_success(pd_status status, std::string_view where)
{
    if (status != TS_MODEL_OK)
        throw BadLine{where, std::string{"the driver refused: "} + meaning(status) + " (status " +
                                 std::to_string(status) + ")"};
}

} // namespace shell
