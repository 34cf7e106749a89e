#include "shown_reference.h"

namespace shell {

void append_json(Json &to, const ProfileNames &names, const Object &object)
{
    if (object.handle == 0)
        return;
    const std::string kind = kind_name(object.kind);
    to.key(kind).number(object.handle);
    if (const std::string *name = names.of(object.kind).name_of(object.handle))
        to.key(kind + "_name").text(*name);
}

void tell(Result &to, const ProfileNames &names, const Object &object)
{
    to.json([&](Json &json) { append_json(json, names, object); });
    to.shown("points at", names.text_of(object));
}

} // namespace shell
