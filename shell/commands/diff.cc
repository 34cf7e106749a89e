// The diff command: what software placed in a table against what the chip has, field by field.
#include <algorithm>
#include <filesystem>
#include <iterator>
#include <variant>

#include "commands.h"
#include "driver.h"
#include "entry_reader.h"
#include "placement.h"
#include "tables.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using reflection::TableFunctions;

// Which bits of a field count: those of the schema, as the library compares, or all.
enum class Bits { schema, all };

// One member of a record: a mask or prefix length by itself, and only the bits that count.
struct Part {
    std::string name;
    ShownField shown;
    Value bits;
    bool is_mask = false;
};

std::vector<Part> parts_of(const pd::Table &table, Bits counting)
{
    std::vector<Part> parts;
    const auto add = [&](const char *name, u16 offset, unsigned width, Form form, Value bits, bool is_mask) {
        parts.push_back({name, {name, form, width, pd::Match::exact, {offset, 0}, {}}, bits, is_mask});
    };
    for (const pd::Field &field : table.key) {
        const Form form = form_of(field.format, field.width);
        const Value bits = counting == Bits::all ? ones(field.width) : Value{field.mask.high, field.mask.low};
        add(field.name, field.offset, field.width, form, bits, false);
        if (field.match == pd::Match::ternary)
            add(field.twin, field.twin_offset, field.width, form, bits, true);
        else if (field.match == pd::Match::lpm)
            add(field.twin, field.twin_offset, 16, Form::number, ones(16), false);
    }
    return parts;
}

std::vector<pd::Field> uncompared(const pd::Table &table, Bits counting)
{
    std::vector<pd::Field> fields;
    if (counting == Bits::schema)
        std::ranges::copy_if(table.key, std::back_inserter(fields), uncompared_bits);
    return fields;
}

std::vector<Part> parts_of(const pd::Action &action)
{
    std::vector<Part> parts;
    for (const pd::Parameter &parameter : action.parameters)
        parts.push_back({std::string{"action_"} + parameter.name,
                         {parameter.name,
                          form_of(parameter.format, parameter.width),
                          parameter.width,
                          pd::Match::exact,
                          {parameter.offset, 0},
                          {}},
                         ones(parameter.width)});
    return parts;
}

Value value_of(const Part &part, const void *record)
{
    return load(part.shown.width, static_cast<const std::byte *>(record) + part.shown.place.value) &
           part.bits;
}

std::string text_of(const Part &part, const void *record)
{
    std::string text;
    if (part.is_mask)
        append_mask_text(text, value_of(part, record), part.shown.form);
    else
        append_text(text, value_of(part, record), part.shown.form);
    return text;
}

struct Difference {
    std::string what;
    std::string software;
    std::string hardware;
};

void compare(std::vector<Difference> &to, const std::vector<Part> &parts, const void *software,
             const void *hardware)
{
    for (const Part &part : parts)
        if (value_of(part, software) != value_of(part, hardware))
            to.push_back({part.name, text_of(part, software), text_of(part, hardware)});
}

void compare_bodies(std::vector<Difference> &to, const EntryReader &software, const EntryReader &hardware,
                    Bits counting)
{
    if (software.names()) {
        // The library compares members by handle, groups by presence.
        const Object left = software.reference(), right = hardware.reference();
        const bool by_handle = left.kind == Kind::member || counting == Bits::all;
        if (left.kind != right.kind || (by_handle && left.handle != right.handle))
            to.push_back({"points at", software.body_text(), hardware.body_text()});
    } else if (&software.action().row() != &hardware.action().row()) {
        to.push_back({"action", software.body_text(), hardware.body_text()});
    } else {
        compare(to, parts_of(software.action().row()), software.action().parameters(),
                hardware.action().parameters());
    }
}

class Comparison {
public:
    Comparison(Session &session, const TableFunctions &table)
        : session_(session), table_(table), software_(table, false, session.names(table)),
          hardware_(table, true, session.names(table)),
          counting_(session.option_words().all_bits ? Bits::all : Bits::schema),
          key_(parts_of(*table.row, counting_)), uncompared_(uncompared(*table.row, counting_))
    {
    }

    void run();

private:
    void compare_entry(pd_entry_hdl entry);
    std::vector<Difference> differences() const;
    void expect_agreement(void *plcmt_data, const std::vector<Difference> &found) const;
    std::string subject() const;
    void print(const Difference &difference) const;
    void print_missing(const std::string &why) const;
    void print_totals() const;
    void tell_uncompared(Result &to) const;
    Result &subject_in(Result &result) const;

    Session &session_;
    const TableFunctions &table_;
    EntryReader software_, hardware_;
    const Bits counting_;
    const std::vector<Part> key_;
    const std::vector<pd::Field> uncompared_; // some of their bits
    u32 compared_ = 0;
    u32 different_ = 0;
};

void Comparison::run()
{
    software_.walk([&] { compare_entry(software_.handle()); });
    compare_entry(default_entry_of(table_));
    print_totals();
}

void Comparison::compare_entry(pd_entry_hdl entry)
{
    const Placement placement{table_.get_plcmt_data, entry};
    software_.read_placement(entry, placement.data());
    ++compared_;
    try {
        hardware_.read(entry);
    } catch (const BadLine &refused) {
        ++different_;
        return print_missing(refused.what);
    }
    const std::vector<Difference> found = differences();
    if (counting_ == Bits::schema)
        expect_agreement(placement.data(), found);
    different_ += !found.empty();
    for (const Difference &difference : found)
        print(difference);
}

std::vector<Difference> Comparison::differences() const
{
    std::vector<Difference> found;
    if (software_.is_default() && !hardware_.is_default())
        found.push_back({"entry", "the default entry", "one with a key"});
    else if (!software_.is_default())
        compare(found, key_, software_.key(), hardware_.key());
    compare_bodies(found, software_, hardware_, counting_);
    return found;
}

void Comparison::expect_agreement(void *plcmt_data, const std::vector<Difference> &found) const
{
    char message[128];
    const u32 equal =
        table_.text.plcmt_data_eq_to_hw(driver_session, static_cast<u8>(device.device_id), table_.row->handle,
                                        software_.handle(), plcmt_data, message);
    if ((equal != 0) != found.empty())
        throw BadLine{{}, subject() + ": the library compares otherwise: " + (equal ? "equal" : message)};
}

std::string Comparison::subject() const
{
    return software_.is_default() ? "default entry" : "entry " + std::to_string(software_.handle());
}

// About the entry that was compared last.
Result &Comparison::subject_in(Result &result) const
{
    result.text("table", table_.row->name).shown("subject", subject());
    if (!software_.is_default())
        result.number("entry", software_.handle());
    return result;
}

void Comparison::print(const Difference &difference) const
{
    Result result{session_.json()};
    subject_in(result).text("difference", difference.what);
    result.text("software", difference.software).text("hardware", difference.hardware);
    session_.print(result.line("{subject}: {difference}: {software} in software, {hardware} in hardware"));
}

void Comparison::print_missing(const std::string &why) const
{
    Result result{session_.json()};
    subject_in(result).text("missing", "hardware").text("why", why);
    session_.print(result.line("{subject}: not in {missing}: {why}"));
}

void Comparison::print_totals() const
{
    Result result{session_.json()};
    result.text("table", table_.row->name).number("compared", compared_).number("different", different_);
    tell_uncompared(result);
    session_.print(result.line(
        "{compared} compared, the default entry among them, {different} different{not_compared}"));
}

// Only where there is such a field.
void Comparison::tell_uncompared(Result &to) const
{
    if (!uncompared_.empty())
        to.list("not_compared", uncompared_, [](Result &each, const pd::Field &field) {
            each.text("field", field.name).number("bits", uncompared_bits(field));
            each.shown("width", std::to_string(field.width));
            return "\nnot compared without --all-bits: {bits} of {width} bits of {field}";
        });
}

// A table; or, where there is none of the name, a file.
struct TableOrFile {
    using Value = std::variant<const TableFunctions *, FileName>;
    static void describe(Usage &usage) { usage.add({"TABLE", "FILE"}); }
    static Value read(Reading &reading)
    {
        if (reflection::find_table(reading.words.peek()))
            return &take_table(reading.words);
        const FileName file = take_file_name(reading.words);
        if (std::error_code unknown; !std::filesystem::exists(file.name, unknown))
            refuse(file.where, {"table or file", {}, "tables"}, table_names());
        return file;
    }
};

void diff(Session &session, const TableOrFile::Value &what)
{
    if (const auto *file = std::get_if<FileName>(&what))
        session.load(*file, Session::Loading::difference);
    else
        Comparison{session, *std::get<const TableFunctions *>(what)}.run();
}

constexpr std::string_view text =
    R"(  FILE is read as by 'load --replace': a line behind + is to be added, behind ~ modified, behind - deleted.
  Of a TABLE it compares each entry and the default entry, as placed, with the hardware: every key field and every parameter,
  by the bits that the schema lists; the last lines name the fields some of whose bits are left out. --all-bits
  compares all bits, and groups by handle, not only by presence. Priorities are not compared.
)";

constexpr Verb verbs[] = {
    verb<diff, TableOrFile>("diff",
                            "prints how hardware differs from software, or what load --replace would change")
        .reads()};

constexpr std::string_view options[] = {"--json", "--all-bits"};

} // namespace

const Command diff_command{verbs, text, options};

} // namespace shell
