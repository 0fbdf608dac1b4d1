#include "morvane/media/image_raw.h"

#include <cstring>

#include <gtest/gtest.h>

#include "tests/support/captured_output.h"
#include "tests/support/picture_files.h"
#include "tests/support/temp_file.h"

namespace {

// A surface of words without a pattern, and words after its end that nobody may touch.
struct guarded_surface {
    std::vector<std::uint32_t> memory;
    std::vector<std::uint32_t> before;
    gtex surface;

    guarded_surface(std::int32_t width, std::int32_t height) {
        const file_bytes noise = mixed_bytes(static_cast<std::size_t>(width * height + 8), 3);
        for (const std::uint8_t byte : noise)
            memory.push_back(byte * 0x10204081U);
        before = memory;
        surface = gtex_wrap(memory.data(), width, height);
    }
};

file_bytes with_front(std::size_t front, const file_bytes& body) {
    file_bytes all = mixed_bytes(front, 9);
    all.insert(all.end(), body.begin(), body.end());
    return all;
}

} // namespace

TEST(image_raw, pixels_from_byte_18_however_many_the_file_holds) {
    const temp_folder folder;
    captured_output printed;
    // Whole, too long, cut between and inside pixels, cut inside the header, empty.
    for (const std::size_t length : {4096U, 5000U, 2048U, 2047U, 2046U, 2045U, 0U}) {
        guarded_surface target(32, 32);
        const file_bytes body = mixed_bytes(length, 4);
        gtex_read_raw(target.surface, folder.write("raw.tga", with_front(18, body)));

        file_bytes expected(target.memory.size() * 4);
        std::memcpy(expected.data(), target.before.data(), expected.size());
        std::copy_n(body.begin(), std::min<std::size_t>(length, 4096), expected.begin());
        EXPECT_EQ(std::memcmp(target.memory.data(), expected.data(), expected.size()), 0) << length;
    }
    guarded_surface target(32, 32);
    gtex_read_raw(target.surface, folder.write("header.tga", mixed_bytes(17, 1)));
    gtex_read_raw(target.surface, folder.write("empty.tga", ""));
    gtex_read_raw({}, folder.path("header.tga"));
    EXPECT_EQ(target.memory, target.before);
    EXPECT_EQ(printed.out() + printed.err(), "");
}

TEST(image_raw, mask_from_byte_786_changes_only_top_bytes) {
    const temp_folder folder;
    captured_output printed;
    constexpr std::size_t pixels = 512 * 288;
    for (const std::size_t length : {pixels, pixels + 99, std::size_t{40000}, std::size_t{0}}) {
        guarded_surface target(512, 288);
        const file_bytes body = mixed_bytes(length, 6);
        gtex_read_mask(target.surface, folder.write("mask.tga", with_front(786, body)));
        for (std::size_t i = 0; i < target.memory.size(); ++i) {
            const std::uint32_t mask = i < length ? body[i] : 0U;
            const std::uint32_t expected =
                i < pixels ? mask << 24 | (target.before[i] & 0xffffffU) : target.before[i];
            ASSERT_EQ(target.memory[i], expected) << "pixel " << i << " with " << length << " values";
        }
    }
    gtex_read_mask({}, folder.path("mask.tga"));
    EXPECT_EQ(printed.out() + printed.err(), "");
}

TEST(image_raw, a_file_that_can_not_be_read_ends_the_process_with_one_line) {
    const temp_folder folder;
    guarded_surface target(4, 4);
    captured_output printed;
    const auto exit_0 = testing::ExitedWithCode(0);
    EXPECT_EXIT(gtex_read_raw(target.surface, folder.path("none.tga")), exit_0,
                "^morvane: .*/none.tga: No such");
    EXPECT_EXIT(gtex_read_raw(target.surface, folder.path()), exit_0, "^morvane: .*: Is a directory\n$");
    EXPECT_EXIT(gtex_read_mask(target.surface, folder.path()), exit_0, "^morvane: .*: Is a directory\n$");
    EXPECT_EQ(printed.out(), "");
}
