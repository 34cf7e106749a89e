// Whether the three sides of the write benchmark do the same work: for every case and sample, the driver is
// to get the same bytes from all. This program is its own driver; it writes down each call.
#include <cstdio>
#include <string>

#include "pipe_mgr_match.h"
#include "write_cases.h"

namespace {

std::string last_call;

template <typename Value>
void append(const Value &value)
{
    last_call.append(reinterpret_cast<const char *>(&value), sizeof value);
}

void append(const u8 *bytes, std::size_t count)
{
    last_call.append(reinterpret_cast<const char *>(bytes), count);
}

struct Compare {
    bool *same;

    template <auto library, auto hand_written, auto best>
    void operator()(const char *table, const char *) const
    {
        for (std::size_t index = 0; index < bench::sample_count; index++) {
            const std::string from_library = bytes_of(library, index);
            if (from_library == bytes_of(hand_written, index) && from_library == bytes_of(best, index))
                continue;
            std::fprintf(stderr, "%s: library and hand-written code differ in sample %zu\n", table, index);
            *same = false;
            return;
        }
    }

    static std::string bytes_of(auto function, std::size_t index)
    {
        bench::call(function, index);
        return std::move(last_call);
    }
};

} // namespace

pd_status pipe_mgr_mat_ent_add(pd_sess_hdl sess, pd_dev_target target, u32 table, pipe_match_spec *match,
                               u32 action, pipe_action_spec *spec, u32 ttl, u32 flags, pd_entry_hdl *entry)
{
    last_call.clear();
    append(sess);
    append(target);
    append(table);
    append(action);
    append(ttl);
    append(flags);
    append(entry);
    append(match->match_value, match->num_bytes);
    append(match->match_mask, match->num_bytes);
    append(spec->action_data.data, spec->action_data.num_bytes);
    pipe_match_spec match_words = *match;
    match_words.match_value = match_words.match_mask = nullptr; // their images stand above
    append(match_words);
    pipe_action_spec action_words = *spec;
    action_words.action_data.data = nullptr;
    append(action_words);
    return 0;
}

int main()
{
    bool same = true;
    bench::for_each_case(Compare{&same});
    return same ? 0 : 1;
}
