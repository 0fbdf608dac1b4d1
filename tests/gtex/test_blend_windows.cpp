// The operators that read windows of their sources.
#include <gtest/gtest.h>

#include "morvane/gtex/blend_windows.h"
#include "tests/support/surfaces.h"

namespace {

std::uint32_t seen_at(guarded_surface& source, std::int64_t x, std::int64_t y) {
    const gtex record = source;
    if (x < 0 || y < 0 || x >= record.width || y >= record.height) return 0;
    return source.at(static_cast<std::int32_t>(x), static_cast<std::int32_t>(y));
}

struct offset {
    std::int32_t x, y;
};
constexpr offset offsets[] = {{0, 0}, {3, 2}, {-4, 5}, {20, -9}, {INT32_MAX, 1}, {1, INT32_MIN}};

} // namespace

TEST(blend_windows, xor_and_channels_read_each_source_with_its_own_stride) {
    guarded_surface a(31, 12, 1), b(17, 29, 2), c(20, 20, 3);
    for (const offset& first : offsets)
        for (const offset& second : offsets) {
            guarded_surface mixed(19, 13, 4), channels(19, 13, 5);
            gtex_xor_windows(mixed, a, first.x, first.y, b, second.x, second.y);
            gtex_channels_windows(channels, a, first.x, first.y, b, second.x, second.y, c, 1, 2);
            for (std::int32_t y = 0; y < 13; ++y)
                for (std::int32_t x = 0; x < 19; ++x) {
                    const std::uint32_t p = seen_at(a, std::int64_t{x} + first.x, std::int64_t{y} + first.y);
                    const std::uint32_t q =
                        seen_at(b, std::int64_t{x} + second.x, std::int64_t{y} + second.y);
                    ASSERT_EQ(mixed.at(x, y), p ^ q);
                    ASSERT_EQ(channels.at(x, y),
                              word_of(0, byte_of(p, 2), byte_of(q, 1), byte_of(seen_at(c, x + 1, y + 2), 0)));
                }
            EXPECT_TRUE(mixed.intact() && channels.intact());
        }
}

TEST(blend_windows, negate_region_complements_inside_the_region_only) {
    struct region {
        std::int32_t x0, y0, x1, y1;
    };
    for (const region& r : {region{2, 3, 9, 8},
                            {-5, -5, 100, 100},
                            {9, 3, 2, 8},
                            {0, 0, 0, 5},
                            {INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}}) {
        guarded_surface dst(21, 10, 6), src(15, 14, 7);
        std::vector<std::uint32_t> expected = dst.copy();
        for (std::int32_t y = 0; y < 10; ++y)
            for (std::int32_t x = 0; x < 15; ++x)
                if (x >= r.x0 && x < r.x1 && y >= r.y0 && y < r.y1)
                    expected[static_cast<std::size_t>(y * 21 + x)] =
                        word_of(0, 255 - byte_of(src.at(x, y), 2), 255 - byte_of(src.at(x, y), 1),
                                255 - byte_of(src.at(x, y), 0));
        gtex_negate_region(dst, src, r.x0, r.y0, r.x1, r.y1);
        expect_pixels(dst, expected);
    }
}
