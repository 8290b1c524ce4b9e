// As much of JSON Schema as docs/qvlink.schema.json uses.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

// Where and why `value` doesn't fit the schema document; empty if it does. A keyword that
// isn't known here doesn't fit either.
std::string WhyInvalid(nlohmann::json const &document, nlohmann::json const &value);
