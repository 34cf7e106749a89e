#include "emit.h"

#include <cctype>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "layout.h"

namespace pdgen {

namespace {

namespace fs = std::filesystem;
using kainjow::mustache::data;
using kainjow::mustache::mustache;

struct Output {
    const char *template_name;
    const char *path; // '*' stands for the name of an element; such a template is rendered once each
    const char *elements = "groups";
    const char *name = "group"; // of an element
};

constexpr Output outputs[] = {
    {"table_header.mustache", "include/pd_*.h"},
    {"program_header.mustache", "include/pd_program.h"},
    {"inspection_header.mustache", "include/pd_inspection.h"},
    {"tables_header.mustache", "include/pd_tables.h"},
    {"actions_header.mustache", "include/pd_actions.h"},
    {"profiles_header.mustache", "include/pd_profiles.h"},
    {"resources_header.mustache", "include/pd_resources.h"},
    {"services_header.mustache", "include/pd_services.h"},
    {"action_rows.mustache", "rows/rows_actions.h"},
    {"table_rows.mustache", "rows/rows_*.h"},
    {"profile_rows.mustache", "rows/rows_profiles.h"},
    {"readers.mustache", "rows/readers.h"},
    {"action_schemas.mustache", "rows/action_schemas.h"},
    {"resource_rows.mustache", "rows/rows_resources.h"},
    {"service_rows.mustache", "rows/rows_services.h"},
    {"action_thunks.mustache", "thunks/thunks_actions.cc"},
    {"thunks.mustache", "thunks/thunks_*.cc"},
    {"profile_thunks.mustache", "thunks/thunks_profiles.cc"},
    {"resource_thunks.mustache", "thunks/thunks_resources.cc"},
    {"service_thunks.mustache", "thunks/thunks_services.cc"},
    {"inspection.mustache", "thunks/inspection_*.cc"},
    {"action_inspection.mustache", "thunks/inspection_actions.cc"},
    {"profile_inspection.mustache", "thunks/inspection_profiles.cc"},
    {"inspection_index.mustache", "thunks/inspection_index.cc"},
    {"exports.mustache", "exports.map"},
    {"reflection_records.mustache", "reflection/reflection_records.h"},
    {"reflection.mustache", "reflection/reflection_*.cc"},
    {"action_reflection.mustache", "reflection/reflection_actions.cc"},
    {"profile_reflection.mustache", "reflection/reflection_profiles.cc"},
    {"resource_reflection.mustache", "reflection/reflection_resources.cc"},
    {"functions_reflection.mustache", "reflection/reflection_functions.cc"},
    {"reflection_index.mustache", "reflection/reflection_index.cc"},
    {"program.mustache", "model/program.cc"},
    {"reference.mustache", "reference/*.md"},
    {"profiles_reference.mustache", "reference/profiles.md"},
    {"resources_reference.mustache", "reference/resources.md"},
    {"services_reference.mustache", "reference/services.md"},
    {"actions_reference.mustache", "reference/actions.md"},
    {"functions_reference.mustache", "reference/functions.md"},
    {"functions_json.mustache", "reference/functions.json"},
    {"functions_schema.mustache", "reference/functions.schema.json"},
    {"catalogue_json.mustache", "reference/catalogue.json"},
    {"catalogue_schema.mustache", "reference/catalogue.schema.json"},
    {"browse.mustache", "reference/index.html"},
    {"driver_header.mustache", "driver/*", "driver_headers", "header"},
    {"driver_reference.mustache", "reference/driver.md"},
    {"every_header.mustache", "operations/every_header.h"},
    {"operation_count.mustache", "operations/operation_count.h"},
    {"operation_rows.mustache", "operations/rows.cc"},
    {"operation_calls.mustache", "operations/calls.cc"},
    {"any_driver.mustache", "operations/any_driver.cc"},
    {"empty_driver.mustache", "operations/empty_driver.cc"},
    {"model_operations.mustache", "model/operations.cc"},
    {"tap_definitions.mustache", "tap/definitions.cc"},
    {"handle_names.mustache", "tap/handle_names.cc"},
};

std::string read_file(const fs::path &path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    const bool empty = file.is_open() && file.peek() == std::ifstream::traits_type::eof() && !file.bad();
    if (!empty && !(text << file.rdbuf()))
        throw std::runtime_error(path.string() + ": cannot be read");
    return text.str();
}

// A line that holds nothing but the tag of a section must leave no line behind; the template library sees to
// that only where the section is rendered, so the tag is set in front of the next line. With a blank line
// there it would be taken for a tag on a line of its own, but for the variable between them.
std::string read_template(const fs::path &path)
{
    std::istringstream lines(read_file(path));
    std::string text;
    bool behind_tag = false;
    for (std::string line; std::getline(lines, line);) {
        const bool lone_tag =
            (line.starts_with("{{#") || line.starts_with("{{^") || line.starts_with("{{/")) &&
            line.find("}}") == line.size() - 2;
        text += behind_tag && line.empty() ? "{{nothing}}" : line;
        text += lone_tag ? "" : "\n";
        behind_tag = lone_tag;
    }
    return text;
}

// Leaves a file alone whose contents would not change, so that nothing is built anew without need.
void write_if_changed(const fs::path &path, const std::string &text)
{
    if (fs::exists(path) && read_file(path) == text)
        return;
    fs::create_directories(path.parent_path());
    const fs::path fresh = path.string() + ".new";
    std::ofstream file(fresh, std::ios::binary);
    if (!(file << text) || !file.flush()) {
        std::error_code ignored;
        fs::remove(fresh, ignored);
        throw std::runtime_error(path.string() + ": cannot be written");
    }
    file.close();
    fs::rename(fresh, path);
}

bool is_of_a_word(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

// Rows and templates say u32 and the like. Whoever includes a header, or copies a prototype, need not have
// these names.
std::string with_standard_types(const std::string &text)
{
    std::string standard;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t end = i + (text[i] == '\\' ? 2 : 1); // the letter of an escape belongs to no word
        while (end < text.size() && is_of_a_word(text[i]) && is_of_a_word(text[end]))
            ++end;
        const std::string_view word = std::string_view{text}.substr(i, end - i);
        if (word == "u8" || word == "u16" || word == "u32" || word == "u64")
            standard.append("uint").append(word.substr(1)).append("_t");
        else
            standard += word;
        i = end;
    }
    return standard;
}

// A variable without a value is an error, not an empty text.
class StrictContext : public kainjow::mustache::context<std::string> {
public:
    StrictContext(std::string template_file, const std::map<std::string, data> &lists)
        : file(std::move(template_file)), function_lists(lists)
    {
    }

    const data *get(const std::string &name) const override
    {
        const data *value = known(context::get(name), name);
        return name == "functions" ? &function_lists.at(value->string_value()) : value;
    }
    const data *get_partial(const std::string &name) const override
    {
        return known(context::get_partial(name), name);
    }

private:
    std::string file;
    const std::map<std::string, data> &function_lists;

    const data *known(const data *value, const std::string &name) const
    {
        if (!value)
            throw std::runtime_error(file + ": \"" + name + "\" has no value here");
        return value;
    }
};

class Emitter {
public:
    Emitter(const CatalogueView &catalogue, fs::path template_directory)
        : view(catalogue.variables), function_lists(catalogue.function_lists),
          templates(std::move(template_directory))
    {
        view.set("nothing", std::string());
        for (const auto &entry : fs::directory_iterator(templates))
            if (entry.path().stem().string().starts_with('_'))
                view.set(
                    entry.path().stem().string(),
                    data(kainjow::mustache::partial([text = partial_text(entry.path())] { return text; })));
        // What the browse page consists of goes into it as it stands: page.css is the variable page_css.
        for (const auto &entry : fs::directory_iterator(templates / "browse"))
            view.set(entry.path().stem().string() + "_" + entry.path().extension().string().substr(1),
                     read_file(entry.path()));
    }

    // Nothing is written before all templates have been rendered.
    void write(const fs::path &output) const
    {
        for (const auto &[path, text] : files)
            write_if_changed(output / path, text);
    }

    void render_all_of(const Output &kind)
    {
        const std::string path = kind.path;
        const std::size_t star = path.find('*');
        mustache text(read_template(templates / kind.template_name));
        if (!text.is_valid())
            throw std::runtime_error(std::string(kind.template_name) + ": " + text.error_message());
        text.set_custom_escape([](const std::string &value) { return value; });
        if (star == std::string::npos) {
            render(kind, text, nullptr, path);
            return;
        }
        for (const data &element : view.get(kind.elements)->list_value()) {
            const std::string name = element.get(kind.name)->string_value();
            render(kind, text, &element, path.substr(0, star) + name + path.substr(star + 1));
        }
    }

private:
    data view;
    const std::map<std::string, data> &function_lists;
    fs::path templates;
    std::vector<std::pair<std::string, std::string>> files; // path below the output directory, text

    // Partials stand inside lines; the newline that ends their file is not theirs.
    static std::string partial_text(const fs::path &path)
    {
        std::string text = read_template(path);
        while (text.ends_with('\n'))
            text.pop_back();
        return text;
    }

    void render(const Output &kind, mustache &text, const data *element, const std::string &path)
    {
        StrictContext context(kind.template_name, function_lists);
        context.push(&view);
        if (element)
            context.push(element);
        const std::string rendered = text.render(context);
        if (!text.is_valid())
            throw std::runtime_error(std::string(kind.template_name) + ": " + text.error_message());
        const bool code = path.ends_with(".h") || path.ends_with(".cc");
        const std::string text_of_file = with_standard_types(rendered);
        files.emplace_back(path, code ? lay_out(text_of_file) : text_of_file);
    }
};

} // namespace

void emit_all(const CatalogueView &view, const fs::path &templates, const fs::path &output)
{
    Emitter emitter(view, templates);
    for (const Output &kind : outputs)
        emitter.render_all_of(kind);
    emitter.write(output);
}

} // namespace pdgen
