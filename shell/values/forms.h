// The forms in which people write values: addresses as addresses, everything else as numbers.
#pragma once

#include <string>

#include "rows.h"
#include "values.h"

namespace shell {

enum class Form { number, ipv4, ipv6, mac, mac_half };

Form form_of(pd::Format format, unsigned width);

void append_text(std::string &to, Value value, Form form);
// Of the longest text of a value of this width.
std::size_t longest_text(Form form, unsigned width);

// As a mask: numbers in hex, addresses as such.
void append_mask_text(std::string &to, Value mask, Form form);
std::size_t longest_mask_text(Form form, unsigned width);

} // namespace shell
