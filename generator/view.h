// The catalogue as templates see it: names, types and literals, ready to be set into text. Every variable
// that a template may use is set here, for every object; where something does not apply it is false or empty.
#pragma once

#include <map>

#include <kainjow/mustache.hpp>

#include "catalogue.h"

namespace pdgen {

struct CatalogueView {
    kainjow::mustache::data variables; // with `groups`, `actions` and `profiles` as lists
    std::map<std::string, kainjow::mustache::data> function_lists; // by what a variable "functions" holds
};

// The whole catalogue. Nothing is wrong with its rows; reported is what only shows here, a function that two
// rows make.
CatalogueView catalogue_view(const Catalogue &catalogue, Diagnostics &diagnostics);

} // namespace pdgen
