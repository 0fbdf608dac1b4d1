// The eight fillers without a texture against the rule worked out pixel by pixel.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "morvane/poly/fillers.h"
#include "morvane/poly/raster.h"
#include "tests/support/plain_raster.h"

namespace {

using plain_raster::corner;
using plain_raster::picture;
using plain_raster::place;
using plain_raster::triangle;

constexpr std::uint32_t colour = 0xc040a0f0; // the top byte belongs to it

std::int32_t whole(std::int64_t value) {
    return static_cast<std::int32_t>(value);
}

struct filler {
    const char* name;
    bool tested, blended, gouraud;
    void (*draw)(std::uint32_t* dst, const triangle& t, std::int32_t opacity);
};

#define XY(n) whole(t[n].x), whole(t[n].y)
#define RGB(n) whole(t[n].value[0]), whole(t[n].value[1]), whole(t[n].value[2])
#define Z(n) whole(t[n].z)
constexpr filler fillers[] = {
    {"fill_flat", false, false, false,
     [](auto* dst, auto& t, auto) { fill_flat(dst, XY(0), XY(1), XY(2), colour); }},
    {"fill_flat_z", true, false, false,
     [](auto* dst, auto& t, auto) { fill_flat_z(dst, XY(0), Z(0), XY(1), Z(1), XY(2), Z(2), colour); }},
    {"fill_flat_a", false, true, false,
     [](auto* dst, auto& t, auto a) { fill_flat_a(dst, XY(0), XY(1), XY(2), colour, a); }},
    {"fill_flat_az", true, true, false,
     [](auto* dst, auto& t, auto a) { fill_flat_az(dst, XY(0), Z(0), XY(1), Z(1), XY(2), Z(2), colour, a); }},
    {"fill_gouraud", false, false, true,
     [](auto* dst, auto& t, auto) { fill_gouraud(dst, XY(0), RGB(0), XY(1), RGB(1), XY(2), RGB(2)); }},
    {"fill_gouraud_z", true, false, true,
     [](auto* dst, auto& t, auto) {
         fill_gouraud_z(dst, XY(0), Z(0), RGB(0), XY(1), Z(1), RGB(1), XY(2), Z(2), RGB(2));
     }},
    {"fill_gouraud_a", false, true, true,
     [](auto* dst, auto& t, auto a) { fill_gouraud_a(dst, XY(0), RGB(0), XY(1), RGB(1), XY(2), RGB(2), a); }},
    {"fill_gouraud_az", true, true, true,
     [](auto* dst, auto& t, auto a) {
         fill_gouraud_az(dst, XY(0), Z(0), RGB(0), XY(1), Z(1), RGB(1), XY(2), Z(2), RGB(2), a);
     }},
};
#undef XY
#undef RGB
#undef Z

void draw_plain(picture& to, const filler& f, const triangle& t, std::int32_t opacity) {
    plain_raster::each_pixel(t, [&](std::int64_t x, std::int64_t y, std::int64_t z, const auto& values) {
        if (f.tested && !to.pass(x, y, z)) return;
        const auto channel = [&](std::size_t i) { return plain_raster::channel(values[i]); };
        const std::uint32_t source =
            f.gouraud ? plain_raster::packed(channel(0), channel(1), channel(2)) : colour;
        std::uint32_t& pixel = to.at(x, y);
        pixel = f.blended ? plain_raster::blended(pixel, source, std::clamp(opacity, 0, 256)) : source;
    });
}

// A frame between two strips that must stay as they are. Without strips it is for a sanitizer to see what
// leaves it.
class guarded_frame {
  public:
    explicit guarded_frame(std::ptrdiff_t strip = 4096)
        : strip_(strip), words_(static_cast<std::size_t>(strip) * 2 + plain_raster::pixel_count(), mark) {
        std::fill_n(pixels(), plain_raster::pixel_count(), 0U);
    }
    std::uint32_t* pixels() { return words_.data() + strip_; }
    bool holds(const picture& expected) {
        return std::equal(expected.colour.begin(), expected.colour.end(), pixels());
    }
    bool strips_whole() const {
        const auto is_mark = [](std::uint32_t word) { return word == mark; };
        return std::all_of(words_.begin(), words_.begin() + strip_, is_mark) &&
               std::all_of(words_.end() - strip_, words_.end(), is_mark);
    }

  private:
    static constexpr std::uint32_t mark = 0x12345678;
    std::ptrdiff_t strip_;
    std::vector<std::uint32_t> words_;
};

bool depths_hold(const picture& expected) {
    return std::equal(expected.depth.begin(), expected.depth.end(), depth_buffer);
}

// Draws `count` triangles with one filler over each other, and the same ones by the rule.
void compare(const filler& f, place where, int count, std::ptrdiff_t strip = 4096) {
    std::mt19937 random(static_cast<std::uint32_t>(count) + static_cast<std::uint32_t>(where));
    raster_clear_depth();
    guarded_frame frame(strip);
    picture expected;
    for (int i = 0; i < count; ++i) {
        const triangle t = plain_raster::random_triangle(random, where);
        const auto opacity = std::uniform_int_distribution<std::int32_t>(-20, 300)(random);
        f.draw(frame.pixels(), t, opacity);
        draw_plain(expected, f, t, opacity);
        if (i % 16 != 0 && i + 1 < count) continue;
        ASSERT_TRUE(frame.holds(expected)) << f.name << ", triangle " << i;
        ASSERT_TRUE(depths_hold(expected)) << f.name << ", depth of triangle " << i;
    }
    EXPECT_TRUE(frame.strips_whole()) << f.name;
}

class poly_fillers : public testing::TestWithParam<filler> {
  protected:
    void SetUp() override { raster_init(512, 288); }
};

TEST_P(poly_fillers, follow_the_rule_inside_the_frame) {
    compare(GetParam(), place::inside, 120);
    compare(GetParam(), place::small, 3000);
}

TEST_P(poly_fillers, follow_the_rule_over_the_edges_of_the_frame) {
    compare(GetParam(), place::at_the_edge, 120);
}

TEST_P(poly_fillers, follow_the_rule_whatever_the_coordinates) {
    compare(GetParam(), place::far_out, 150);
    compare(GetParam(), place::extreme, 150);
}

TEST_P(poly_fillers, draw_frames_of_any_size) {
    for (const auto& [width, height] : {std::pair{37, 23}, {1, 1}, {3, 50}, {16, 2}}) {
        raster_init(width, height);
        compare(GetParam(), place::at_the_edge, 200, 0);
        compare(GetParam(), place::small, 200, 0);
    }
    raster_init(0, 0);
    GetParam().draw(nullptr, {{{.x = 0, .y = 0}, {.x = 9, .y = 9}, {.x = 0, .y = 9}}}, 128);
}

TEST_P(poly_fillers, do_not_overlap_along_a_common_edge) {
    std::mt19937 random(5);
    for (int i = 0; i < 60; ++i) {
        // Two triangles on either side of the edge from a to b.
        const triangle t = plain_raster::random_triangle(random, place::inside);
        const corner &a = t[0], &b = t[1], &c = t[2];
        const corner opposite{.x = a.x + b.x - c.x, .y = a.y + b.y - c.y, .z = c.z, .value = c.value};
        std::vector<int> covered(plain_raster::pixel_count(), 0);
        for (const triangle& half : {triangle{a, b, c}, triangle{b, opposite, a}}) {
            raster_clear_depth();
            guarded_frame frame;
            std::fill_n(frame.pixels(), plain_raster::pixel_count(), 0xff000000U);
            GetParam().draw(frame.pixels(), half, 255);
            for (std::size_t at = 0; at < covered.size(); ++at)
                covered[at] += frame.pixels()[at] != 0xff000000U;
        }
        ASSERT_LE(*std::max_element(covered.begin(), covered.end()), 1);
    }
}

INSTANTIATE_TEST_SUITE_P(all, poly_fillers, testing::ValuesIn(fillers),
                         [](const auto& tested) { return std::string(tested.param.name); });

// Pixels that differ from 0.
std::vector<std::pair<int, int>> drawn(const std::vector<std::uint32_t>& frame) {
    std::vector<std::pair<int, int>> all;
    for (int y = 0; y < raster_height; ++y) {
        for (int x = 0; x < raster_width; ++x) {
            if (frame[picture::index(x, y)] != 0) all.emplace_back(x, y);
        }
    }
    return all;
}

TEST(poly_raster, a_triangle_leaves_out_its_last_row_and_column) {
    raster_init(512, 288);
    std::vector<std::pair<int, int>> expected;
    for (int y = 10; y < 20; ++y) {
        for (int x = 10; x < 30 - y; ++x)
            expected.emplace_back(x, y);
    }
    // Every order of the corners covers the same.
    std::array<std::pair<int, int>, 3> at{{{10, 10}, {10, 20}, {20, 10}}};
    std::sort(at.begin(), at.end());
    do {
        std::vector<std::uint32_t> frame(plain_raster::pixel_count(), 0);
        fill_flat(frame.data(), at[0].first, at[0].second, at[1].first, at[1].second, at[2].first,
                  at[2].second, colour);
        EXPECT_EQ(drawn(frame), expected);
    } while (std::next_permutation(at.begin(), at.end()));
    std::vector<std::uint32_t> frame(plain_raster::pixel_count(), 0);
    fill_flat(frame.data(), 5, 9, 80, 9, 30, 9, colour);
    fill_flat(frame.data(), 9, 5, 9, 80, 9, 30, colour);
    EXPECT_TRUE(drawn(frame).empty());
}

// A square of 20 by 20 pixels at one depth.
void square(std::vector<std::uint32_t>& frame, std::int32_t z, std::uint32_t with, std::int32_t opacity) {
    fill_flat_az(frame.data(), 50, 50, z, 70, 50, z, 50, 70, z, with, opacity);
    fill_flat_az(frame.data(), 70, 50, z, 70, 70, z, 50, 70, z, with, opacity);
}

TEST(poly_raster, the_nearer_face_wins_and_the_later_one_of_two_as_near) {
    raster_init(512, 288);
    raster_clear_depth();
    std::vector<std::uint32_t> frame(plain_raster::pixel_count(), 0);
    const auto seen = [&] { return frame[picture::index(60, 60)]; };
    square(frame, -8000000, 1, 256); // farther than everything but what holds nothing
    EXPECT_EQ(seen(), 1U);
    square(frame, -200, 2, 256);
    EXPECT_EQ(seen(), 2U);
    square(frame, -100, 3, 256);
    EXPECT_EQ(seen(), 3U);
    square(frame, -100, 4, 256);
    EXPECT_EQ(seen(), 4U);
    square(frame, -101, 5, 256);
    EXPECT_EQ(seen(), 4U);
    square(frame, -90, 0xffffff, 0); // nothing to see, but in the way
    EXPECT_EQ(seen(), 4U);
    square(frame, -95, 6, 256);
    EXPECT_EQ(seen(), 4U);
    EXPECT_EQ(depth_buffer[picture::index(60, 60)], -90 * 256);
}

TEST(poly_raster, an_impossible_size_leaves_an_empty_frame) {
    for (const auto& [width, height] :
         {std::pair{-5, 7}, {0, 288}, {INT32_MAX, INT32_MAX}, {1 << 20, 1 << 20}}) {
        EXPECT_EQ(raster_init(width, height), 0);
        EXPECT_EQ(raster_width, 0);
        EXPECT_EQ(depth_buffer, nullptr);
        raster_clear_depth();
    }
    EXPECT_EQ(raster_init(513, 289), 0);
    EXPECT_EQ(raster_center_x, 256);
    EXPECT_EQ(raster_center_y, 144);
}

} // namespace
