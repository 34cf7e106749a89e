// The library as a file: what its dynamic section and symbols promise to a process that loads it.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "reflection.h"

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

TEST(Exports, AreTheNamesThatTheCatalogueGivesAndNoOthers)
{
    std::set<std::string> entry_functions;
    for (const reflection::TableFunctions *table : reflection::tables()) {
        if (table->row->key.empty())
            continue;
        const std::string name = std::string("p4_pd_tessel_switch_") + table->row->name;
        for (const char *operation :
             {"_table_delete", "_table_delete_by_match_spec", "_match_spec_to_entry_hdl"})
            entry_functions.insert(name + operation);
        for (const pd::Binding &binding : table->row->actions) {
            const std::string with = std::string("_with_") + binding.action->name;
            entry_functions.insert(name + "_table_add" + with);
            entry_functions.insert(name + "_table_modify" + with);
            entry_functions.insert(name + "_table_modify" + with + "_by_match_spec");
        }
    }
    EXPECT_EQ(entry_functions.size(), 1635u);

    std::set<std::string> functions = entry_functions;
    functions.insert({"p4_pd_tessel_switch_init", "p4_pd_tessel_switch_cleanup",
                      "p4_pd_tessel_switch_device_state_cleanup"});
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
