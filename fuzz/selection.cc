// The document of the member-selection state, as it is handed over at start, and what follows a restart. The
// library trusts the outer form, the model what it logged itself; everything else may be anything.
#include <cjson/cJSON.h>

#include <memory>
#include <string>

#include "bytes.h"
#include "model.h"
#include "pd.h"
#include "pd_ms.h"

namespace {

using Text = std::unique_ptr<char, decltype(&std::free)>;

Text log()
{
    return {ts_model_log_state(0), &std::free};
}

// An object with a list "act_profs" of elements that have a name: less than this ends the process.
bool has_the_form(const std::string &json)
{
    const std::unique_ptr<cJSON, decltype(&cJSON_Delete)> root{cJSON_Parse(json.c_str()), &cJSON_Delete};
    const cJSON *elements = cJSON_GetObjectItem(root.get(), "act_profs");
    if (!elements)
        return false;
    for (const cJSON *element = elements->child; element; element = element->next)
        if (!cJSON_IsString(cJSON_GetObjectItem(element, "name")))
            return false;
    return true;
}

// Takes members and groups by the handles that documents are likely to have.
void change(fuzz::Bytes &in)
{
    const pd_word state = 1 + in.take() % 4; // the profiles have the first ones
    const u32 member = in.take() % 8, group = in.take() % 8;
    pd_mbr_hdl members[8];
    u32 action = 0;
    switch (in.take() % 8) {
    case 0:
        p4_pd_ms_new_mbr(1, state, 0, member);
        p4_pd_ms_set_mbr_act(state, 0, member, group);
        break;
    case 1:
        p4_pd_ms_del_mbr(1, state, 0, member);
        break;
    case 2:
        p4_pd_ms_new_grp(1, state, 0, group);
        p4_pd_ms_set_grp_act(state, 0, group, member);
        break;
    case 3:
        p4_pd_ms_del_grp(1, state, 0, group, member, members);
        break;
    case 4:
        p4_pd_ms_add_mbr_to_grp(1, state, 0, member, group);
        break;
    case 5:
        p4_pd_ms_del_mbr_from_grp(1, state, 0, member, group);
        break;
    case 6:
        p4_pd_ms_mbr_apply_to_grps(state, 0, member, p4_pd_ms_grp_update_res, state);
        break;
    default:
        p4_pd_ms_get_grp_act(state, 0, group, &action);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::Bytes in{data, size};
    ts_model_reset();
    p4_pd_tessel_switch_init();
    for (u32 changes = in.take() % 16; changes > 0; --changes)
        change(in);
    fuzz::Bytes later{data, size};
    const std::string json{in.rest()};
    if (has_the_form(json))
        ts_model_restore_state(0, json.c_str());
    for (u32 changes = later.take() % 16; changes > 0; --changes)
        change(later);

    const Text before = log();
    ts_model_forget_selection(0);
    fuzz::expect(ts_model_restore_state(0, before.get()) == 0, "a log can be restored");
    fuzz::expect(std::string{before.get()} == log().get(), "what is restored is what was logged");
    p4_pd_tessel_switch_restore_virtual_dev_state(1, 0, 0, 0, 0);
    p4_pd_tessel_switch_cleanup();
    return 0;
}
