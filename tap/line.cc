#include "line.h"

#include "decoding.h"
#include "handle_names.h"
#include "line_text.h"

namespace tap {

namespace {

class Writer : public LineText {
public:
    Writer(Buffer &line, Cursor &from) : LineText{line}, from_{from} {}

    void argument(const ArgumentRow &row)
    {
        begin(row);
        value(row);
    }

    // Passes over what an out value said before the call; false when there was no place for it.
    bool room(const ArgumentRow &row)
    {
        u32 unused;
        return get_room(from_, row.kind, unused);
    }

    void returned(Returns returns, u64 result)
    {
        text(")");
        first_ = false;
        if (returns == Returns::nothing)
            return;
        text(" = ");
        if (returns == Returns::memory)
            hexadecimal(result);
        else if (returns == Returns::integer)
            signed_decimal(result);
        else
            decimal(result);
    }

private:
    Cursor &from_;
    bool first_ = true;

    // A device and a pipe, and what they are called in a line.
    void begin(const ArgumentRow &row)
    {
        if (!first_)
            text(", ");
        first_ = false;
        if (row.kind == Kind::target)
            return;
        text(row.kind == Kind::device || row.kind == Kind::device_byte ? "dev" : row.name);
        text("=");
    }

    void named(Kind kind)
    {
        const u32 handle = from_.word();
        hexadecimal(handle);
        if (const char *name = handle_name(kind, handle)) {
            text(" ");
            text(name);
        }
    }

    template <typename Record>
    Record take()
    {
        Record record{};
        get_record(from_, record);
        return record;
    }

    void write(const pd_dev_target &target)
    {
        pair("dev=", target.device_id);
        text(", pipe=");
        hexadecimal(target.pipe_id);
    }

    void write(const pipe_idle_params &params)
    {
        words({params.idle_mode, params.idle_param_1, params.idle_param_2, params.idle_param_3,
               params.idle_param_4, params.reserved_1, params.idle_param_5, params.reserved_2});
    }

    void write(const pipe_pvs_property_value &value) { words({value.value, value.reserved}); }

    void write(const pipe_pvs_property_args &args)
    {
        words({args.argument, args.reserved_1, args.reserved_2});
    }

    void write(const pipe_wred_spec &wred)
    {
        words({wred.words[0], wred.words[1], wred.words[2], wred.words[3]});
    }

    void write(const pipe_match_spec &match)
    {
        text("{value=");
        image(match.match_value, match.num_bytes);
        text(" mask=");
        image(match.match_mask, match.num_bytes);
        pair(" partition=", match.partition_index);
        pair(" priority=", match.priority);
        pair(" bits=", match.num_valid_bits);
        pair(" bytes=", match.num_bytes);
        if (match.match_reserved != 0)
            pair(" reserved=", match.match_reserved);
        text("}");
    }

    void data_words(const pipe_action_data &data)
    {
        pair("bits=", data.num_valid_bits);
        pair(" bytes=", data.num_bytes);
        text(" data=");
        image(data.data, data.num_bytes);
    }

    void write(const pipe_action_data &data)
    {
        text("{");
        data_words(data);
        text("}");
    }

    void write(const pipe_meter_spec &meter)
    {
        pair("{type=", meter.meter_type);
        pair(" committed=", meter.committed_unit);
        pair(":", meter.committed_rate);
        pair(":", meter.committed_burst);
        pair(" peak=", meter.peak_unit);
        pair(":", meter.peak_rate);
        pair(":", meter.peak_burst);
        text("}");
    }

    // Without the zeros at the end: what this program keeps in a register fits the first byte.
    void write(const pipe_stful_value &value)
    {
        std::size_t bytes = sizeof value.bytes;
        while (bytes > 1 && value.bytes[bytes - 1] == 0)
            --bytes;
        digits(value.bytes, bytes);
    }

    // The data as the recorded form tells what it is; none is not shown.
    void resource()
    {
        enum { none, meter };
        text("handle=");
        hexadecimal(from_.word());
        pair(" index=", from_.word());
        pair(" tag=", from_.word());
        const u64 data = from_.number();
        if (data == none)
            return;
        text(data == meter ? " meter=" : " data=");
        if (data == meter)
            write(take<pipe_meter_spec>());
        else
            write(take<pipe_stful_value>());
    }

    void resources(u32 count)
    {
        for (u32 at = 0; at < count && from_.ok(); ++at) {
            text(at == 0 ? "" : "; ");
            resource();
        }
    }

    void action()
    {
        const u64 kind = from_.number(), member = from_.number(), group = from_.number();
        pair("{kind=", kind);
        text(" ");
        data_words(take<pipe_action_data>());
        if (kind == PIPE_ACTION_MEMBER)
            pair(" member=", member);
        if (kind == PIPE_ACTION_GROUP)
            pair(" group=", group);
        if (const u32 count = from_.count()) {
            text(" resources=[");
            resources(count);
            text("]");
        }
        text("}");
    }

    void write(const pipe_stat_data &counts)
    {
        decimal(counts.first_count);
        pair(":", counts.second_count);
    }

    void write(const pipe_hash_calc_input_field_attribute &attribute)
    {
        decimal(attribute.input_field);
        pair(":", attribute.attr_type);
        text("=");
        hexadecimal(attribute.attr_value);
    }

    void write(const pd_drv_client_callbacks &client)
    {
        const char *before = "";
        const auto mention = [&](const char *name, bool set) {
            if (!set)
                return;
            text(before);
            text(name);
            before = " ";
        };
        text("{");
        mention("remove", client.device_remove != nullptr);
        mention("log", client.device_log != nullptr);
        mention("restore", client.device_restore != nullptr);
        text("}");
    }

    void query_elements(const char *before)
    {
        u32 count;
        if (!get_query(from_, count))
            return;
        for (u32 at = 0; at < count && from_.ok(); ++at) {
            text(before);
            write(take<pipe_stful_value>());
            before = " ";
        }
    }

    void query()
    {
        text("[");
        query_elements("");
        text("]");
    }

    void queries(u32 count)
    {
        text("[");
        for (u32 at = 0; at < count && from_.ok(); ++at)
            query_elements(at == 0 ? "" : " ");
        text("]");
    }

    template <typename Record>
    void record()
    {
        if (!get_presence(from_))
            return text("null");
        write(take<Record>());
    }

    // A list of which `element` writes one.
    template <typename Element>
    void list(Element element)
    {
        if (!get_presence(from_))
            return text("null");
        text("[");
        const u32 count = from_.count();
        for (u32 at = 0; at < count && from_.ok(); ++at) {
            text(at == 0 ? "" : " ");
            element();
        }
        text("]");
    }

    void byte_list()
    {
        if (!get_presence(from_))
            return text("null");
        const u32 count = from_.count();
        image(from_.bytes(count).data(), count);
    }

    void resource_list()
    {
        if (!get_presence(from_))
            return text("null");
        text("[");
        resources(from_.count());
        text("]");
    }

    void quoted(const char *quote)
    {
        std::size_t length;
        const char *words = get_text(from_, length);
        text(words != nullptr ? quote : "null");
        text({words, length});
        text(words != nullptr ? quote : "");
    }

    void document()
    {
        if (!get_presence(from_))
            return text("null");
        quoted("");
    }

    void value(const ArgumentRow &row)
    {
        switch (row.kind) {
        case Kind::session:
        case Kind::device:
        case Kind::device_byte:
        case Kind::entry:
        case Kind::entry_word:
        case Kind::value_set_entry:
        case Kind::member:
        case Kind::group:
        case Kind::selection:
        case Kind::number:
        case Kind::byte:
        case Kind::size:
            return decimal(from_.number());
        case Kind::integer:
            return signed_decimal(from_.number());
        case Kind::handle:
        case Kind::word:
        case Kind::opaque:
            return hexadecimal(from_.number());
        case Kind::table:
        case Kind::action:
        case Kind::counter:
        case Kind::meter:
        case Kind::register_table:
        case Kind::digest:
        case Kind::value_set:
        case Kind::calculation:
            return named(row.kind);
        case Kind::target:
            return write(take<pd_dev_target>());
        case Kind::idle_params:
            return write(take<pipe_idle_params>());
        case Kind::property_value:
            return write(take<pipe_pvs_property_value>());
        case Kind::property_args:
            return write(take<pipe_pvs_property_args>());
        case Kind::match:
            return record<pipe_match_spec>();
        case Kind::action_spec:
            return get_presence(from_) ? action() : text("null");
        case Kind::action_data:
            return record<pipe_action_data>();
        case Kind::meter_spec:
            return record<pipe_meter_spec>();
        case Kind::wred_spec:
            return record<pipe_wred_spec>();
        case Kind::register_value:
            return record<pipe_stful_value>();
        case Kind::query:
            return get_presence(from_) ? query() : text("null");
        case Kind::counts:
            return record<pipe_stat_data>();
        case Kind::client:
            return record<pd_drv_client_callbacks>();
        case Kind::document:
            return document();
        case Kind::numbers:
        case Kind::members:
            return list([this] { decimal(from_.number()); });
        case Kind::bytes:
            return byte_list();
        case Kind::resources:
            return resource_list();
        case Kind::attributes:
            return list([this] { write(take<pipe_hash_calc_input_field_attribute>()); });
        case Kind::queries:
            return get_presence(from_) ? queries(from_.count()) : text("null");
        case Kind::counts_list:
            return list([this] { record<pipe_stat_data>(); });
        case Kind::text:
        case Kind::format:
            return quoted("\"");
        case Kind::callback:
            return text(from_.number() != 0 ? "set" : "null");
        }
    }
};

} // namespace

bool write_line(Buffer &line, const OperationRow &operation, u64 result, std::span<const u8> body,
                bool has_results)
{
    Cursor from{body};
    Writer writer{line, from};
    const auto &rows = operation.arguments;
    u32 places = 0; // a bit for each out argument that had a place
    writer.text(operation.name);
    writer.text("(");
    for (std::size_t at = 0; at < rows.size(); ++at)
        if (rows[at].direction == Direction::in)
            writer.argument(rows[at]);
        else
            places |= u32{writer.room(rows[at])} << at;
    writer.returned(operation.returns, result);
    for (std::size_t at = 0; has_results && at < rows.size(); ++at)
        if (places >> at & 1)
            writer.argument(rows[at]);
    return from.ok();
}

} // namespace tap
