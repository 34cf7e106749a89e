// The library as a file: what its dynamic section and symbols promise to a process that loads it.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "reflection.h"
#include "resources.h"
#include "services.h"

namespace {

// An ELF file of this process's own ABI, read whole. Structures are copied out, as nothing in it need be
// aligned.
class ElfFile {
public:
    explicit ElfFile(const char *path)
    {
        std::ifstream file(path, std::ios::binary);
        bytes.resize(std::filesystem::file_size(path));
        file.read(bytes.data(), static_cast<std::streamsize>(bytes.size())); // a debug build has many of them
        const auto header = at<ElfW(Ehdr)>(0);
        EXPECT_EQ(std::memcmp(header.e_ident, ELFMAG, SELFMAG), 0) << path;
        for (unsigned i = 0; i < header.e_shnum; ++i)
            sections.push_back(at<ElfW(Shdr)>(header.e_shoff + i * sizeof(ElfW(Shdr))));
    }

    // Calls `visit(entry, name)` for each entry of the section of this type; `name` reads its string table.
    template <typename Entry, typename Visit>
    void each(unsigned type, Visit visit) const
    {
        for (const auto &section : sections) {
            if (section.sh_type != type)
                continue;
            const auto names = sections.at(section.sh_link).sh_offset;
            const auto name = [&](std::size_t offset) { return std::string(&bytes.at(names + offset)); };
            for (std::size_t i = 0; i < section.sh_size / sizeof(Entry); ++i)
                visit(at<Entry>(section.sh_offset + i * sizeof(Entry)), name);
        }
    }

private:
    std::vector<char> bytes;
    std::vector<ElfW(Shdr)> sections;

    template <typename T>
    T at(std::size_t offset) const
    {
        T value;
        EXPECT_LE(offset + sizeof value, bytes.size());
        std::memcpy(&value, bytes.data() + offset, sizeof value);
        return value;
    }
};

struct Symbols {
    std::set<std::string> functions, objects, undefined;
};

Symbols symbols_of_library()
{
    Symbols symbols;
    ElfFile(TS_LIBRARY).each<ElfW(Sym)>(SHT_DYNSYM, [&](const ElfW(Sym) & symbol, auto name) {
        if (symbol.st_name == 0)
            return;
        const bool function = ELF32_ST_TYPE(symbol.st_info) == STT_FUNC;
        auto &kind = symbol.st_shndx == SHN_UNDEF ? symbols.undefined
                     : function                   ? symbols.functions
                                                  : symbols.objects;
        kind.insert(name(symbol.st_name));
    });
    return symbols;
}

// Entries of one tag of the dynamic section, as strings.
std::set<std::string> dynamic_strings(int tag)
{
    std::set<std::string> strings;
    ElfFile(TS_LIBRARY).each<ElfW(Dyn)>(SHT_DYNAMIC, [&](const ElfW(Dyn) & entry, auto name) {
        if (entry.d_tag == tag)
            strings.insert(name(entry.d_un.d_val));
    });
    return strings;
}

std::vector<std::string> difference(const std::set<std::string> &a, const std::set<std::string> &b)
{
    std::vector<std::string> only_in_a;
    std::set_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(only_in_a));
    return only_in_a;
}

// Every name that stands in front of a bracket in the driver's headers.
std::set<std::string> driver_operations()
{
    const char *letters = "abcdefghijklmnopqrstuvwxyz0123456789_";
    std::set<std::string> names;
    for (const auto &header : std::filesystem::directory_iterator(TS_DRIVER_DIR)) {
        std::ifstream file(header.path());
        for (std::string text; std::getline(file, text, '(');)
            names.insert(text.substr(text.find_last_not_of(letters) + 1));
    }
    return names;
}

const std::string prefix = "p4_pd_tessel_switch_";

// The families of which every table, every table of a kind or every profile has one function.
constexpr const char *of_every_table[] = {"_table_get_default_entry_handle",
                                          "_table_reset_default_entry",
                                          "_get_plcmt_data",
                                          "_get_entry_count",
                                          "_get_first_entry_handle",
                                          "_get_next_entry_handles",
                                          "_set_property",
                                          "_get_property",
                                          "_register_mat_update_cb",
                                          "_get_mat_table_handle",
                                          "_supports_entry_priority",
                                          "_table_get_default_entry",
                                          "_get_entry",
                                          "_get_entry_from_plcmt_data"};
constexpr const char *of_every_indirect_table[] = {
    "_add_entry",
    "_add_entry_with_selector",
    "_modify_entry",
    "_modify_entry_with_selector",
    "_modify_entry_by_match_spec",
    "_modify_entry_with_selector_by_match_spec",
    "_set_default_entry",
    "_set_default_entry_with_selector",
};
constexpr const char *of_members[] = {
    "_del_member",
    "_get_member",
    "_get_member_from_plcmt_data",
    "_get_full_member_info_from_plcmt_data",
    "_get_plcmt_data",
    "_get_first_member",
    "_get_next_members",
    "_get_act_prof_entry_count",
    "_register_adt_update_cb",
    "_get_adt_table_handle",
};
constexpr const char *of_groups[] = {
    "_create_group",
    "_del_group",
    "_add_member_to_group",
    "_del_member_from_group",
    "_group_member_state_set",
    "_group_member_state_get",
    "_group_member_get_from_hash",
    "_set_dynamic_action_selection_fallback_member",
    "_reset_dynamic_action_selection_fallback_member",
    "_sel_track_updates",
    "_register_callback",
    "_register_sel_update_cb",
    "_get_sel_table_handle",
    "_get_selector_group_count",
    "_get_selector_group_member_count",
    "_get_first_group",
    "_get_next_groups",
    "_get_first_group_member",
    "_get_next_group_members",
    "_get_word_llp_active_member_count",
    "_get_word_llp_active_members",
    "_sel_get_plcmt_data",
};
constexpr const char *of_every_key[] = {"_table_delete", "_table_delete_by_match_spec",
                                        "_match_spec_to_entry_hdl"};

// The exported functions of one kind; a name that comes twice is an error.
class Names {
public:
    void add(const std::string &name) { EXPECT_TRUE(names.insert(name).second) << name; }

    template <typename Families>
    void add_families(const std::string &table, const Families &families)
    {
        for (const char *family : families)
            add(table + family);
    }

    std::set<std::string> names;
};

Names entry_functions()
{
    Names functions;
    for (const reflection::TableFunctions *table : reflection::tables()) {
        if (table->row->key.empty())
            continue;
        const std::string name = prefix + table->row->name;
        functions.add_families(name, of_every_key);
        for (const pd::Binding &binding : table->row->actions) {
            const std::string with = std::string("_with_") + binding.action->name;
            functions.add(name + "_table_add" + with);
            functions.add(name + "_table_modify" + with);
            functions.add(name + "_table_modify" + with + "_by_match_spec");
        }
    }
    return functions;
}

Names decoding_functions()
{
    Names functions;
    for (const reflection::TableFunctions *table : reflection::tables()) {
        if (!table->row->key.empty())
            functions.add(std::string("unbuild_key_") + table->row->name);
        if (pd::key_kind(*table->row) != pd::Match::exact)
            functions.add(std::string("unbuild_mask_") + table->row->name);
    }
    for (const pd::Action *action : reflection::actions())
        if (!action->parameters.empty())
            functions.add(std::string("unbuild_action_spec_") + action->name);
    return functions;
}

Names default_actions()
{
    Names functions;
    for (const reflection::TableFunctions *table : reflection::tables())
        for (const pd::Binding &binding : table->row->actions)
            if (binding.default_action)
                functions.add(prefix + table->row->name + "_set_default_action_" + binding.action->name);
    return functions;
}

Names table_functions()
{
    Names functions;
    for (const reflection::TableFunctions *table : reflection::tables()) {
        functions.add_families(prefix + table->row->name, of_every_table);
        if (table->row->profile)
            functions.add_families(prefix + table->row->name, of_every_indirect_table);
    }
    return functions;
}

Names member_functions()
{
    Names functions;
    for (const reflection::ProfileFunctions *profile : reflection::profiles()) {
        const std::string name = prefix + profile->row->name;
        functions.add_families(name, of_members);
        for (const pd::Binding &binding : profile->row->actions) {
            functions.add(name + "_add_member_with_" + binding.action->name);
            functions.add(name + "_modify_member_with_" + binding.action->name);
        }
    }
    return functions;
}

Names group_functions()
{
    Names functions;
    for (const reflection::ProfileFunctions *profile : reflection::profiles())
        functions.add_families(prefix + profile->row->name, of_groups);
    return functions;
}

// A header's validity bit goes by the name of the header.
Names width_functions()
{
    Names functions;
    for (const reflection::TableFunctions *table : reflection::tables())
        for (const pd::Field &field : table->row->key) {
            const std::string name = prefix + table->row->name + "_" + field.name;
            const std::size_t validity = name.ends_with("_valid") ? std::strlen("_valid") : 0;
            functions.add(name.substr(0, name.size() - validity) + "_width");
        }
    return functions;
}

// Counters, meters, registers, and entries that age.
Names resource_functions()
{
    Names functions;
    const auto add = [&](const char *kind, const auto &rows, const auto &families) {
        for (const auto &row : rows)
            for (const std::string family : families)
                functions.add(prefix + kind + family + row.row->name);
    };
    add("counter_", reflection::counters(), std::array{"read_", "write_", "hw_sync_"});
    add("meter_", reflection::meters(),
        std::array{"set_", "read_", "bytecount_adjust_set_", "bytecount_adjust_get_"});
    add("register_", reflection::registers(),
        std::array{"hw_sync_", "read_", "write_", "reset_all_", "write_all_", "range_reset_", "range_read_"});
    functions.add_families(prefix, std::array{"bytes_meter_set", "packets_meter_set", "bytes_meter_read",
                                              "packets_meter_read", "wred_set"});
    functions.add_families(prefix + "register_",
                           std::array{"read_direct", "write_direct", "read_indirect", "write_indirect",
                                      "hw_sync_direct", "hw_sync_indirect", "reset_all_indirect",
                                      "range_reset_indirect", "write_all_indirect"});
    for (const reflection::TableFunctions *table : reflection::tables())
        if (table->idle)
            functions.add_families(prefix + table->row->name,
                                   std::array{"_idle_tmo_enable", "_idle_tmo_disable",
                                              "_idle_register_tmo_cb", "_idle_params_get", "_set_ttl",
                                              "_get_ttl", "_reset_ttl", "_update_hit_state",
                                              "_get_hit_state"});
    return functions;
}

Names service_functions()
{
    Names functions;
    for (const auto &digest : reflection::digests())
        functions.add_families(prefix + digest.row->name,
                               std::array{"_register", "_deregister", "_notify_ack"});
    for (const auto &set : reflection::value_sets())
        functions.add_families(prefix + "pvs_" + set.row->name,
                               std::array{"_set_property", "_get_property", "_entry_add", "_entry_modify",
                                          "_entry_delete", "_entry_get", "_entry_handle_get",
                                          "_entry_get_first_entry_handle", "_entry_get_next_entry_handles",
                                          "_entry_get_count"});
    for (const auto &hash : reflection::hashes())
        functions.add_families(prefix + "hash_calc_" + hash.row->name,
                               std::array{"_input_set", "_input_get", "_algorithm_set", "_algorithm_get",
                                          "_seed_set", "_seed_get", "_input_field_attribute_set",
                                          "_input_field_attribute_count_get", "_input_field_attribute_get",
                                          "_calculate_hash_value"});
    functions.add_families(prefix, std::array{"set_learning_timeout", "get_digest_entry_field",
                                              "get_digest_entry_size", "snapshot_create", "snapshot_delete",
                                              "snapshot_capture_trigger_set", "snapshot_capture_data_get"});
    return functions;
}

constexpr const char *counted_tables[] = {
    "l2DmacClassify",   "ingressPortDropCheck",  "trapToCpu",           "haloCounters",
    "finalDropControl", "egressTcamV6RaclBank1", "egressTcamRaclBank1", "egressPortDropCheck"};

constexpr const char *of_all_tables[] = {"cli_schema",
                                         "entry_value",
                                         "plcmt_data_value",
                                         "adt_plcmt_data_value",
                                         "entry_hdl_first",
                                         "entry_hdl_next",
                                         "entry_hdl_default",
                                         "member_hdl_first",
                                         "member_hdl_next",
                                         "plcmt_data_print",
                                         "adt_plcmt_data_print",
                                         "plcmt_data_eq_to_hw",
                                         "stringify_counter_matchspec",
                                         "_print_v4addr_exact",
                                         "_print_v4addr_lpm",
                                         "_print_v4addr_ternary",
                                         "_print_v6addr_exact",
                                         "_print_v6addr_lpm",
                                         "_print_v6addr_ternary",
                                         "_print_mac_exact",
                                         "_print_mac_ternary"};

Names inspection_functions()
{
    Names functions;
    for (const reflection::TableFunctions *table : reflection::tables()) {
        const std::string name = prefix + table->row->name;
        functions.add_families(name, std::array{"_schema", "_value", "_plcmt_data_value", "_plcmt_data_print",
                                                "_plcmt_data_eq_to_hw"});
        if (!table->row->key.empty())
            functions.add_families(name, std::array{"_match_spec_schema", "_match_spec_value",
                                                    "_match_spec_print", "_match_specs_are_equal"});
    }
    for (const pd::Action *action : reflection::actions()) {
        functions.add_families(prefix + action->name, std::array{"_schema", "_value"});
        if (!action->parameters.empty())
            functions.add_families(prefix + action->name, std::array{"_print", "_action_specs_are_equal"});
    }
    for (const reflection::ProfileFunctions *profile : reflection::profiles())
        functions.add_families(prefix + profile->row->name,
                               std::array{"_schema", "_plcmt_data_value", "_adt_plcmt_data_print"});
    for (const char *table : counted_tables)
        functions.add_families(
            prefix + table, std::array{"_match_spec_stringify_for_counter", "_stringify_counter_match_spec"});
    functions.add_families(prefix, of_all_tables);
    return functions;
}

TEST(Exports, AreTheNamesThatTheCatalogueGivesAndNoOthers)
{
    Names all;
    const std::pair<Names, std::size_t> kinds[] = {{entry_functions(), 1635},
                                                   {decoding_functions(), 141 + 51 + 156},
                                                   {default_actions(), 172},
                                                   {table_functions(), 158 * 14 + 4 * 8},
                                                   {member_functions(), 62},
                                                   {group_functions(), 88},
                                                   {width_functions(), 519},
                                                   {resource_functions(), 30 + 21 + 37 + 135},
                                                   {service_functions(), 9 + 70 + 120 + 4},
                                                   {inspection_functions(), 602 + 767 + 469 + 456 + 17}};
    for (const auto &[kind, count] : kinds) {
        EXPECT_EQ(kind.names.size(), count);
        for (const std::string &name : kind.names)
            all.add(name);
    }
    for (const char *name : {"init", "cleanup", "device_state_cleanup", "restore_virtual_dev_state",
                             "action_enum_to_string", "action_string_to_enum"})
        all.add(prefix + name);
    const std::set<std::string> &functions = all.names;
    EXPECT_EQ(functions.size(), 7811u);

    const Symbols symbols = symbols_of_library();
    EXPECT_EQ(difference(functions, symbols.functions), std::vector<std::string>{}) << "not exported";
    EXPECT_EQ(difference(symbols.functions, functions), std::vector<std::string>{})
        << "exported beyond the catalogue";
    EXPECT_EQ(symbols.objects,
              (std::set<std::string>{"bf_drv_hdl", "p4_pd_tessel_switch_action_name_strings"}));
}

TEST(Exports, SonameCarriesTheVersion)
{
    EXPECT_EQ(dynamic_strings(DT_SONAME), std::set<std::string>{"libts_bf_pd_nat_static.so.0"});
}

// A C program loads the library without a C++ runtime. Sanitizers bring libraries and names of their own.
TEST(Imports, AreTheDriverCjsonAndTheCLibrary)
{
    if (*TS_SANITIZE)
        GTEST_SKIP() << "built with sanitizers: " TS_SANITIZE;
    EXPECT_EQ(dynamic_strings(DT_NEEDED), (std::set<std::string>{"libcjson.so.1", "libc.so.6"}));

    const std::set<std::string> driver = driver_operations();
    EXPECT_TRUE(driver.contains("pipe_mgr_mat_ent_add"));
    const std::set<std::string> linker_hooks = {"_ITM_deregisterTMCloneTable", "_ITM_registerTMCloneTable",
                                                "__gmon_start__"};
    void *c_library = dlopen("libc.so.6", RTLD_LAZY);
    ASSERT_NE(c_library, nullptr) << dlerror();
    const std::set<std::string> undefined = symbols_of_library().undefined;
    EXPECT_TRUE(undefined.contains("pipe_mgr_mat_ent_add"));
    for (const std::string &name : undefined)
        EXPECT_TRUE(driver.contains(name) || name.starts_with("cJSON_") || linker_hooks.contains(name) ||
                    dlsym(c_library, name.c_str()))
            << name << " is an operation of neither the driver nor cJSON nor the C library";
    for (const char *allocator : {"malloc", "calloc", "realloc", "aligned_alloc", "strdup", "free"})
        EXPECT_FALSE(undefined.contains(allocator))
            << allocator << ": memory comes from the driver's services";
    dlclose(c_library);
}

} // namespace
