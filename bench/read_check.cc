// Whether the two sides of the read benchmark do the same work: for every case, and for every sample of it in
// each shape in which a driver may answer, both are to make the same calls and to leave the same bytes. This
// program stands before the driver that keeps entries and writes the calls down. With an argument it reads
// entries in the first shape alone.
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <utility>

#include "bf_sys.h"
#include "read_cases.h"

namespace {

std::string calls;

template <typename Value>
void append(const Value &value)
{
    calls.append(reinterpret_cast<const char *>(&value), sizeof value);
}

void append(const u8 *bytes, std::size_t count)
{
    calls.append(reinterpret_cast<const char *>(bytes), count);
}

// What a driver may make of an entry that it was given.
using Shape = std::pair<const char *, void (*)(bench::Entry &)>;
constexpr Shape all_shapes[] = {
    {"as it was written", [](bench::Entry &) {}},
    {"the default entry", [](bench::Entry &entry) { entry.match.num_bytes = 0; }},
    {"a detached resource", [](bench::Entry &entry) { entry.spec.resources[0].res_tag = PIPE_RES_DETACH; }},
    {"a member of a profile", [](bench::Entry &entry) { entry.spec.action_kind = PIPE_ACTION_MEMBER; }},
    {"another table's action", [](bench::Entry &entry) { entry.action = 0x20000fff; }},
    {"a refusal", [](bench::Entry &entry) { entry.status = 4; }},
};

template <auto function>
std::string read(pd_entry_hdl entry)
{
    calls.clear();
    bench::ResultsOf<function> results;
    append(bench::get(function, entry, results));
    append(results);
    return std::move(calls);
}

struct Compare {
    std::span<const Shape> shapes;
    bool *same;

    template <auto add, auto library, auto hand_written>
    void operator()(const char *table, const char *) const
    {
        for (const auto &[name, alter] : shapes) {
            bench::keep_samples<add>();
            for (std::size_t index = 0; index < bench::sample_count; index++) {
                alter(bench::entries[index]);
                const pd_entry_hdl entry = static_cast<pd_entry_hdl>(index);
                if (read<library>(entry) == read<hand_written>(entry))
                    continue;
                std::fprintf(stderr, "%s, %s: library and hand-written code differ in sample %zu\n", table,
                             name, index);
                *same = false;
                break;
            }
        }
    }
};

} // namespace

pd_status pipe_mgr_get_entry(pd_sess_hdl sess, u32 table, pd_dev_target target, pd_entry_hdl entry,
                             pipe_match_spec *match, pipe_action_spec *spec, u32 *action, u8 from_hw,
                             u32 resources, u32 flags)
{
    append(sess);
    append(table);
    append(target);
    append(entry);
    append(from_hw);
    append(resources);
    append(flags);
    append(match->match_value, match->num_bytes);
    append(match->match_mask, match->num_bytes);
    append(spec->action_data.data, spec->action_data.num_bytes);
    pipe_match_spec match_words = *match;
    match_words.match_value = match_words.match_mask = nullptr; // their images stand above
    append(match_words);
    pipe_action_spec action_words = *spec;
    action_words.action_data.data = nullptr;
    append(action_words);
    return bench::answer(bench::entries[entry], match, spec, action);
}

void *bf_sys_calloc(size_t count, size_t size)
{
    append('+');
    append(count);
    append(size);
    return std::calloc(count, size);
}

void bf_sys_free(void *memory)
{
    append('-');
    std::free(memory);
}

int bf_sys_log_and_trace(int module, int level, const char *format, ...)
{
    calls += format; // not the place, which differs
    append(module);
    append(level);
    return 0;
}

int main(int argc, char **)
{
    bool same = true;
    const std::span shapes{all_shapes};
    bench::for_each_read_case(Compare{argc > 1 ? shapes.first(1) : shapes, &same});
    return same ? 0 : 1;
}
