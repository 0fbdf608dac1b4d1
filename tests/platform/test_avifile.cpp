// The layer that reads clips: exact frame numbers whatever the codec and the order of asking.
#include "morvane/platform/clip/avifile.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "tests/support/clip_files.h"
#include "tests/support/open_clip.h"
#include "tests/support/temp_file.h"

namespace {

using bytes = std::vector<std::uint8_t>;
using clip_files::picture;

// A picture as the layer must hand it out: blue, green, red, the bottom row first, no gaps.
bytes as_bitmap(const picture& p) {
    bytes all;
    for (int y = p.height - 1; y >= 0; --y)
        for (int x = 0; x < p.width; ++x)
            for (int c = 2; c >= 0; --c)
                all.push_back(p.at(x, y)[c]);
    return all;
}

TEST(avifile, lossless_clips_of_any_width_come_back_to_the_byte) {
    const temp_folder folder;
    struct row {
        clip_files::form form;
        std::vector<int> widths;
    };
    const std::vector<row> rows = {
        {{.codec = AV_CODEC_ID_FFV1, .pixels = AV_PIX_FMT_BGR0, .key_every = 5}, {1, 2, 3, 17, 50, 64}},
        {{.codec = AV_CODEC_ID_PNG, .pixels = AV_PIX_FMT_RGB24}, {1, 5, 31, 64}},
        {{.codec = AV_CODEC_ID_RAWVIDEO, .pixels = AV_PIX_FMT_BGR24}, {3, 6, 33, 64}},
        {{.codec = AV_CODEC_ID_HUFFYUV, .pixels = AV_PIX_FMT_RGB24}, {8, 36, 50}},
        {{.codec = AV_CODEC_ID_UTVIDEO, .pixels = AV_PIX_FMT_GBRP}, {8, 35, 64}},
        {{.codec = AV_CODEC_ID_ZMBV, .pixels = AV_PIX_FMT_BGR0, .key_every = 7}, {17, 64}},
    };
    for (const row& r : rows) {
        for (const int width : r.widths) {
            SCOPED_TRACE(std::string(avcodec_get_name(r.form.codec)) + ", " + std::to_string(width) +
                         " wide");
            const auto pictures = numbered_pictures(width, 9, 23);
            const std::string path = folder.path("clip.avi");
            ASSERT_TRUE(clip_files::write(path, pictures, r.form));
            const open_clip clip(path);
            ASSERT_EQ(clip.result, avi::ok);
            ASSERT_EQ(clip.length(), 23);
            for (const int number : jumps(23))
                ASSERT_EQ(clip.pixels(number), as_bitmap(pictures[static_cast<std::size_t>(number)]))
                    << number;
            const avi::bitmap_header* head = clip.frame(4);
            EXPECT_EQ(head->biSize, 40U);
            EXPECT_EQ(head->biWidth, width);
            EXPECT_EQ(head->biHeight, 9);
            EXPECT_EQ(head->biBitCount, 24);
            EXPECT_EQ(head->biClrUsed, 0U);
            EXPECT_EQ(head->biSizeImage, static_cast<std::uint32_t>(width * 9 * 3));
        }
    }
}

TEST(avifile, indices_take_their_colours_from_the_palette_in_force) {
    const temp_folder folder;
    constexpr int width = 21, height = 6, count = 9;
    for (const int bits : {1, 4, 8}) {
        std::array<clip_files::palette, 2> palettes;
        for (int i = 0; i < 1 << bits; ++i) {
            const auto shade = static_cast<std::uint8_t>(i * 7 + 20);
            palettes[0].push_back({shade, static_cast<std::uint8_t>(200 - i), 90});
            palettes[1].push_back({5, shade, static_cast<std::uint8_t>(100 + i)});
        }
        std::vector<bytes> frames;
        for (int i = 0; i < count; ++i)
            for (int at = 0; at < width * height; ++at)
                (at == 0 ? frames.emplace_back() : frames.back())
                    .push_back(static_cast<std::uint8_t>((at * 5 + at / width + i) % (1 << bits)));
        for (const std::size_t change : {std::size_t{count}, std::size_t{4}}) { // never, or amidst the clip
            clip_files::write_indexed(folder.path("clip.avi"), width, bits, frames, palettes, change);
            const open_clip clip(folder.path("clip.avi"));
            ASSERT_EQ(clip.length(), count);
            for (const int number : jumps(count)) {
                const auto frame = static_cast<std::size_t>(number);
                picture coloured{width, height, {}};
                for (const std::uint8_t index : frames[frame]) {
                    const auto& rgb = palettes[frame < change ? 0 : 1][index];
                    coloured.rgb.insert(coloured.rgb.end(), rgb.begin(), rgb.end());
                }
                ASSERT_EQ(clip.pixels(number), as_bitmap(coloured)) << bits << " bits, frame " << number;
            }
        }
    }
}

class lossy_codecs : public testing::TestWithParam<clip_files::form> {};

// Whatever the order of asking, frame n shows picture n and is the same, to the byte, as in one pass from
// the first to the last.
TEST_P(lossy_codecs, show_the_frame_that_is_asked_for) {
    const temp_folder folder;
    const std::string path = folder.path("clip.avi");
    constexpr int count = 61;
    if (!clip_files::write(path, numbered_pictures(64, 48, count), GetParam()))
        GTEST_SKIP() << "this system's library has no such encoder";
    const open_clip clip(path);
    ASSERT_EQ(clip.result, avi::ok);
    ASSERT_EQ(clip.length(), count);
    std::vector<bytes> in_order;
    for (int i = 0; i < count; ++i) {
        in_order.push_back(clip.pixels(i));
        ASSERT_EQ(number_in(in_order.back()), i);
    }
    auto is_frame = [&](const open_clip& asked, int number) {
        return asked.pixels(number) == in_order[static_cast<std::size_t>(number)];
    };
    for (const int number : jumps(count))
        ASSERT_TRUE(is_frame(clip, number)) << number;
    for (const int first : {count - 1, 30, 1}) { // and as the first that is asked for
        const open_clip fresh(path);
        EXPECT_TRUE(is_frame(fresh, first)) << first;
        EXPECT_TRUE(is_frame(fresh, 7));
        EXPECT_TRUE(is_frame(fresh, 33));
        EXPECT_TRUE(is_frame(fresh, 32));
    }
}

INSTANTIATE_TEST_SUITE_P(
    avifile, lossy_codecs,
    testing::Values(
        clip_files::form{.codec = AV_CODEC_ID_MJPEG, .pixels = AV_PIX_FMT_YUVJ444P},
        clip_files::form{.codec = AV_CODEC_ID_MPEG4, .pixels = AV_PIX_FMT_YUV420P},
        clip_files::form{.codec = AV_CODEC_ID_MPEG4, .pixels = AV_PIX_FMT_YUV420P, .between = 2},
        clip_files::form{
            .codec = AV_CODEC_ID_MPEG4, .pixels = AV_PIX_FMT_YUV420P, .key_every = 300, .between = 1},
        clip_files::form{.codec = AV_CODEC_ID_MPEG2VIDEO, .pixels = AV_PIX_FMT_YUV420P, .between = 2},
        clip_files::form{.codec = AV_CODEC_ID_MSMPEG4V3, .pixels = AV_PIX_FMT_YUV420P, .key_every = 9},
        clip_files::form{.codec = AV_CODEC_ID_CINEPAK, .pixels = AV_PIX_FMT_RGB24, .key_every = 9},
        clip_files::form{.codec = AV_CODEC_ID_H264, .pixels = AV_PIX_FMT_YUV420P, .between = 3}),
    [](const auto& tested) {
        const clip_files::form& f = tested.param;
        return std::string(avcodec_get_name(f.codec)) + "_" + std::to_string(f.key_every) + "_" +
               std::to_string(f.between);
    });

// A flat picture stays flat and keeps its colour, to the last column of an odd width.
TEST(avifile, colours_survive_luma_and_chroma) {
    const temp_folder folder;
    struct row {
        AVCodecID codec;
        AVPixelFormat pixels;
        int width;
    };
    const row rows[] = {
        {AV_CODEC_ID_MJPEG, AV_PIX_FMT_YUVJ444P, 64}, {AV_CODEC_ID_MJPEG, AV_PIX_FMT_YUVJ422P, 64},
        {AV_CODEC_ID_MJPEG, AV_PIX_FMT_YUVJ420P, 64}, {AV_CODEC_ID_FFV1, AV_PIX_FMT_YUV444P, 64},
        {AV_CODEC_ID_FFV1, AV_PIX_FMT_YUV444P, 33},   {AV_CODEC_ID_FFV1, AV_PIX_FMT_YUV422P, 33},
        {AV_CODEC_ID_FFV1, AV_PIX_FMT_YUV420P, 33},   {AV_CODEC_ID_FFV1, AV_PIX_FMT_YUV420P, 1},
    };
    const std::array<std::uint8_t, 3> blue_green_red = {120, 40, 200};
    for (const row& r : rows) {
        SCOPED_TRACE("form " + std::to_string(r.pixels) + ", " + std::to_string(r.width) + " wide");
        picture flat{r.width, 32, {}};
        for (int i = 0; i < r.width * flat.height; ++i)
            flat.rgb.insert(flat.rgb.end(), blue_green_red.rbegin(), blue_green_red.rend());
        const std::string path = folder.path("flat.avi");
        ASSERT_TRUE(clip_files::write(path, {flat}, {.codec = r.codec, .pixels = r.pixels}));
        const open_clip clip(path);
        const bytes seen = clip.pixels(0);
        ASSERT_EQ(seen.size(), flat.rgb.size());
        for (std::size_t i = 0; i < seen.size(); ++i)
            ASSERT_NEAR(seen[i], blue_green_red[i % 3], 3) << "byte " << i;
    }
}

TEST(avifile, the_frame_in_hand_is_handed_out_again) {
    const temp_folder folder;
    const std::string path = folder.path("clip.avi");
    ASSERT_TRUE(clip_files::write(path, numbered_pictures(64, 48, 5), {}));
    const open_clip clip(path);
    const avi::bitmap_header* first = clip.frame(2);
    const bytes before = clip.pixels(2);
    std::filesystem::remove(path);
    EXPECT_EQ(clip.frame(2), first);
    EXPECT_EQ(clip.pixels(2), before);
}

TEST(avifile, tells_size_length_and_times) {
    const temp_folder folder;
    const std::string path = folder.path("clip.avi");
    ASSERT_TRUE(clip_files::write(path, numbered_pictures(64, 48, 30), {}, 30000, 1001));
    const open_clip clip(path);
    avi::stream_info info{};
    ASSERT_EQ(AVIStreamInfoA(clip.stream, &info, sizeof info), avi::ok);
    EXPECT_EQ(info.type, avi::type_video);
    EXPECT_EQ(info.frame.right - info.frame.left, 64);
    EXPECT_EQ(info.frame.bottom - info.frame.top, 48);
    EXPECT_EQ(info.length, 30U);
    EXPECT_EQ(std::uint64_t{info.rate} * 1001, std::uint64_t{info.scale} * 30000);
    EXPECT_STREQ(info.name, "ffv1");
    EXPECT_EQ(AVIStreamSampleToTime(clip.stream, 30), 1001);
    EXPECT_EQ(AVIStreamSampleToTime(clip.stream, 1), 33);
    EXPECT_EQ(AVIStreamSampleToTime(clip.stream, INT32_MAX), INT32_MAX);

    avi::stream_info half{};
    half.name[0] = 'x';
    EXPECT_EQ(AVIStreamInfoA(clip.stream, &half, 60), avi::ok);
    EXPECT_EQ(half.rate, info.rate);
    EXPECT_EQ(half.name[0], 'x'); // beyond the size that was told
}

TEST(avifile, positions_outside_the_stream_give_nothing) {
    const temp_folder folder;
    const std::string path = folder.path("clip.avi");
    ASSERT_TRUE(clip_files::write(path, numbered_pictures(64, 48, 1), {}));
    const open_clip clip(path);
    EXPECT_EQ(clip.length(), 1);
    EXPECT_EQ(number_in(clip.pixels(0)), 0);
    for (const int outside : {-1, 1, 2, INT32_MAX, INT32_MIN})
        EXPECT_EQ(clip.frame(outside), nullptr);
    EXPECT_EQ(number_in(clip.pixels(0)), 0);
}

TEST(avifile, frames_that_the_file_leaves_out_show_the_one_before) {
    const temp_folder folder;
    const std::string path = folder.path("clip.avi");
    const std::vector<int> times = {0, 1, 2, 5, 6, 9, 10};
    for (const AVCodecID codec : {AV_CODEC_ID_PNG, AV_CODEC_ID_MPEG4}) {
        const clip_files::form form{.codec = codec,
                                    .pixels =
                                        codec == AV_CODEC_ID_PNG ? AV_PIX_FMT_RGB24 : AV_PIX_FMT_YUV420P,
                                    .key_every = 4};
        ASSERT_TRUE(clip_files::write(path, numbered_pictures(64, 48, 7), form, 25, 1, times));
        const open_clip clip(path);
        ASSERT_EQ(clip.length(), 11);
        const std::vector<int> shown = {0, 1, 2, 2, 2, 3, 4, 4, 4, 5, 6};
        for (const int number : jumps(11))
            ASSERT_EQ(number_in(clip.pixels(number)), shown[static_cast<std::size_t>(number)]) << number;
    }
}

TEST(avifile, calls_on_nothing_do_nothing) {
    avi::stream* none = nullptr;
    EXPECT_EQ(AVIStreamOpenFromFileA(nullptr, "x", avi::type_video, 0, 0, nullptr), avi::bad_argument);
    EXPECT_EQ(AVIStreamOpenFromFileA(&none, nullptr, avi::type_video, 0, 0, nullptr), avi::bad_argument);
    EXPECT_EQ(AVIStreamOpenFromFileA(&none, "x", 0, 0, 0, nullptr), avi::bad_argument);
    avi::stream_info info{};
    EXPECT_EQ(AVIStreamInfoA(nullptr, &info, sizeof info), avi::bad_argument);
    EXPECT_EQ(AVIStreamLength(nullptr), 0);
    EXPECT_EQ(AVIStreamSampleToTime(nullptr, 5), 0);
    EXPECT_EQ(AVIStreamGetFrameOpen(nullptr, nullptr), nullptr);
    EXPECT_EQ(AVIStreamGetFrame(nullptr, 0), nullptr);
    EXPECT_EQ(AVIStreamGetFrameClose(nullptr), avi::bad_argument);
    EXPECT_EQ(AVIStreamRelease(nullptr), 0U);
}

} // namespace
