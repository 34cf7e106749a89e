// The catalogue as templates see it: names, types and literals, ready to be set into text. Every variable
// that a template may use is set here, for every object; where something does not apply it is false or empty.
#pragma once

#include <kainjow/mustache.hpp>

#include "catalogue.h"

namespace pdgen {

// The whole catalogue, with `groups`, `actions` and `profiles` as lists. Nothing is wrong with its rows;
// reported is what only shows here, a function that two rows make.
kainjow::mustache::data catalogue_view(const Catalogue &catalogue, Diagnostics &diagnostics);

} // namespace pdgen
