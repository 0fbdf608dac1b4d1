// The name fields of the scene's records: 256 characters, ended by a 0.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

inline constexpr std::size_t name_capacity = 256;

// Copies `name` into `field`, cut to 255 characters.
inline void set_name_field(char (&field)[name_capacity], std::string_view name) {
    const std::size_t length = std::min(name.size(), name_capacity - 1);
    std::copy_n(name.data(), length, field);
    field[length] = 0;
}
