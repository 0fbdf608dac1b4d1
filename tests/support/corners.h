// Random and extreme corners for the tests of scan conversion, and their text for a failure.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/plain_fillers.h"

__extension__ using wide = __int128;
using pixels = std::vector<std::uint32_t>;
using plain::corner;
using triangle = std::array<corner, 3>;

class coordinates {
  public:
    explicit coordinates(std::uint32_t seed) : random(seed) {}
    std::int64_t between(std::int64_t low, std::int64_t high) {
        return low + static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(high - low + 1));
    }
    corner any(std::int64_t low, std::int64_t high_x, std::int64_t high_y) {
        return {between(low, high_x), between(low, high_y), between(-600, 600), between(-600, 600)};
    }
    triangle three(std::int64_t low, std::int64_t high_x, std::int64_t high_y) {
        return {any(low, high_x, high_y), any(low, high_x, high_y), any(low, high_x, high_y)};
    }
    // A coordinate near 0, near the far edges, or at one end of the numbers.
    std::int64_t extreme() {
        constexpr std::int64_t marks[] = {0,         1,         287,        288,        511,
                                          512,       40000,     -40000,     1 << 20,    -(1 << 24),
                                          INT32_MAX, INT32_MIN, 2000000000, -1999999999};
        const std::int64_t mark = marks[random() % std::size(marks)];
        return std::clamp<std::int64_t>(mark + between(-3, 3), INT32_MIN, INT32_MAX);
    }
    corner far() { return {extreme(), extreme(), between(-600, 600), between(-600, 600)}; }

  private:
    std::mt19937_64 random;
};

inline std::int32_t i32(std::int64_t value) {
    return static_cast<std::int32_t>(value);
}

template<std::size_t count>
std::string text_of(const std::array<corner, count>& t) {
    std::ostringstream text;
    for (const corner& point : t)
        text << '(' << point.x << ", " << point.y << ") ";
    return text.str();
}
