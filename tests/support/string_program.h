// Runs bytes as operations on a UtilsString and on its model.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// The first difference that shows, or an empty text.
std::string RunStringProgram(const std::uint8_t *data, std::size_t size);
