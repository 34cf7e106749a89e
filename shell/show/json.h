// Writes one JSON document to the end of a string, piece by piece and in the order of the calls. Bytes of a
// text that are no UTF-8 become the characters of the same number, \u0080 to \u00ff.
#pragma once

#include <string>
#include <string_view>

#include "pd_types.h"

namespace shell {

class Json {
public:
    explicit Json(std::string &to) : to_(to) {}

    // The object that the document is.
    Json &open_document()
    {
        first_ = true;
        return open_object();
    }
    Json &open_object() { return piece("{"); }
    Json &close_object() { return end('}'); }
    Json &open_array() { return piece("["); }
    Json &close_array() { return end(']'); }
    Json &key(std::string_view name);
    Json &text(std::string_view text);
    Json &number(u64 number);
    Json &flag(bool value) { return piece(value ? "true" : "false"); }
    Json &null() { return piece("null"); }
    // A piece of JSON that is whole.
    Json &whole(std::string_view json) { return piece(json); }

private:
    Json &piece(std::string_view text);
    Json &end(char bracket);
    void escape(std::string_view text);

    std::string &to_;
    bool first_ = true; // in its object or array, or behind its key: no comma goes before it
};

} // namespace shell
