// Clips with holes, damage and lies in them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "morvane/platform/clip/avifile.h"
#include "tests/support/captured_output.h"
#include "tests/support/clip_files.h"
#include "tests/support/open_clip.h"
#include "tests/support/temp_file.h"

namespace {

using bytes = std::vector<std::uint8_t>;

// Places of the chunks of pictures, behind their heads.
std::vector<std::size_t> picture_chunks(const bytes& file) {
    std::vector<std::size_t> places;
    const auto movie = std::search(file.begin(), file.end(), "movi", "movi" + 4) - file.begin();
    for (auto i = static_cast<std::size_t>(movie); i + 8 < file.size(); ++i) {
        if (std::memcmp(&file[i], "idx1", 4) == 0) break;
        if (std::memcmp(&file[i], "00d", 3) == 0) places.push_back(i + 8);
    }
    return places;
}

TEST(damaged_clips, damaged_frames_show_the_one_before) {
    const temp_folder folder;
    const std::string path = folder.path("clip.avi");
    ASSERT_TRUE(clip_files::write(path, numbered_pictures(64, 48, 40),
                                  {.codec = AV_CODEC_ID_PNG, .pixels = AV_PIX_FMT_RGB24}));
    bytes file = folder.read("clip.avi");
    const auto chunks = picture_chunks(file);
    ASSERT_EQ(chunks.size(), 40U);
    auto is_damaged = [](int i) { return i < 2 || i == 9 || (i >= 12 && i <= 32); };
    std::vector<int> shown;
    for (int i = 0; i < 40; ++i) {
        if (is_damaged(i)) std::memset(&file[chunks[static_cast<std::size_t>(i)]], 0x11, 12);
        shown.push_back(!is_damaged(i) ? i : (shown.empty() ? -1 : shown.back()));
    }
    folder.write("clip.avi", file);
    const open_clip clip(path);
    ASSERT_EQ(clip.length(), 40);
    for (int round = 0; round < 2; ++round)
        for (const int number : jumps(40))
            ASSERT_EQ(number_in(clip.pixels(number)), shown[static_cast<std::size_t>(number)]) << number;
    for (const int first : {1, 9, 30, 33}) {
        const open_clip fresh(path);
        EXPECT_EQ(number_in(fresh.pixels(first)), shown[static_cast<std::size_t>(first)]) << first;
    }
}

// A frame lost on the way leaves a gap; it doesn't move those behind it.
TEST(damaged_clips, a_lost_frame_leaves_the_numbers_of_the_others) {
    const temp_folder folder;
    const std::string path = folder.path("clip.avi");
    ASSERT_TRUE(
        clip_files::write(path, numbered_pictures(64, 48, 30),
                          {.codec = AV_CODEC_ID_MPEG4, .pixels = AV_PIX_FMT_YUV420P, .key_every = 5}));
    bytes file = folder.read("clip.avi");
    const auto chunks = picture_chunks(file);
    ASSERT_EQ(chunks.size(), 30U);
    for (const std::size_t lost : {std::size_t{8}, std::size_t{9}, std::size_t{21}})
        std::memset(&file[chunks[lost]], 0x11, 12);
    folder.write("clip.avi", file);
    const open_clip clip(path);
    ASSERT_EQ(clip.length(), 30);
    for (int round = 0; round < 2; ++round) {
        for (const int number : jumps(30)) {
            // What follows a loss is right again from the next key frame on.
            if (number == 8 || number == 9 || (number >= 21 && number < 25)) continue;
            ASSERT_EQ(number_in(clip.pixels(number)), number);
        }
        EXPECT_EQ(number_in(clip.pixels(8)), 7);
        EXPECT_EQ(number_in(clip.pixels(9)), 7);
    }
}

TEST(damaged_clips, a_clip_without_its_index_plays_whole) {
    const temp_folder folder;
    const std::string path = folder.path("clip.avi");
    for (const AVCodecID codec : {AV_CODEC_ID_MPEG4, AV_CODEC_ID_MSMPEG4V3, AV_CODEC_ID_MPEG2VIDEO}) {
        ASSERT_TRUE(clip_files::write(path, numbered_pictures(64, 48, 40),
                                      {.codec = codec, .pixels = AV_PIX_FMT_YUV420P}));
        bytes file = folder.read("clip.avi");
        const auto index = std::search(file.begin(), file.end(), "idx1", "idx1" + 4);
        ASSERT_NE(index, file.end());
        file.erase(index, file.end());
        folder.write("clip.avi", file);
        const open_clip clip(path);
        ASSERT_EQ(clip.length(), 40);
        for (const int number : jumps(40))
            ASSERT_EQ(number_in(clip.pixels(number)), number) << avcodec_get_name(codec);
    }
}

// Every file is opened, read here and there, and closed; a sanitizer build sees what goes wrong.
void read_somewhere(const std::string& path) {
    const captured_descriptor quiet(STDERR_FILENO);
    const open_clip clip(path);
    ASSERT_EQ(clip.result == avi::ok, clip.stream != nullptr);
    ASSERT_EQ(clip.length() > 0, clip.stream != nullptr);
    for (const int part : {0, 3, 1, 4, 2}) {
        const avi::bitmap_header* head = clip.frame((clip.length() - 1) * part / 4);
        if (head == nullptr) continue;
        const auto* pixels = reinterpret_cast<const std::uint8_t*>(head) + head->biSize;
        volatile std::uint8_t last = pixels[head->biSizeImage - 1];
        static_cast<void>(last);
    }
}

// The file ends in the middle of chunk 12 of a clip, which is shown as frame 12, or where frames are coded
// from both sides as frame 11.
TEST(damaged_clips, a_frame_cut_in_the_middle_shows_the_one_before) {
    const temp_folder folder;
    const std::string path = folder.path("clip.avi");
    for (const clip_files::form& form :
         {clip_files::form{.codec = AV_CODEC_ID_MJPEG, .pixels = AV_PIX_FMT_YUVJ444P},
          clip_files::form{.codec = AV_CODEC_ID_MSMPEG4V3, .pixels = AV_PIX_FMT_YUV420P, .key_every = 9},
          clip_files::form{
              .codec = AV_CODEC_ID_MPEG4, .pixels = AV_PIX_FMT_YUV420P, .key_every = 300, .between = 2}}) {
        SCOPED_TRACE(avcodec_get_name(form.codec));
        ASSERT_TRUE(clip_files::write(path, numbered_pictures(64, 48, 20), form));
        std::vector<bytes> shown;
        for (int i = 0; i < 13; ++i)
            shown.push_back(open_clip(path).pixels(i));
        const std::size_t cut = form.between == 0 ? 12 : 11;
        shown[cut] = shown[cut - 1];
        const bytes whole = folder.read("clip.avi");
        const auto chunks = picture_chunks(whole);
        folder.write("clip.avi", std::span(whole).first((chunks[12] + chunks[13]) / 2));
        const open_clip clip(path);
        ASSERT_EQ(clip.length(), 13);
        for (const int number : jumps(13))
            ASSERT_EQ(clip.pixels(number), shown[static_cast<std::size_t>(number)]) << number;
        EXPECT_EQ(open_clip(path).pixels(12), shown[12]);
        folder.write("clip.avi", std::span(whole).first(chunks[12] - 8)); // between two frames
        EXPECT_EQ(open_clip(path).length(), 12);
        for (std::size_t length = 0; length < whole.size(); length += 1 + length / 6) {
            folder.write("clip.avi", std::span(whole).first(length));
            read_somewhere(path);
        }
    }
}

// An index in front of the frames, in the room that the writer left for one, tells of all of them.
TEST(damaged_clips, a_clip_cut_behind_its_index_keeps_its_length) {
    const temp_folder folder;
    const std::string path = folder.path("clip.avi");
    ASSERT_TRUE(clip_files::write(path, numbered_pictures(64, 48, 9),
                                  {.codec = AV_CODEC_ID_PNG, .pixels = AV_PIX_FMT_RGB24}));
    bytes whole = folder.read("clip.avi");
    const auto chunks = picture_chunks(whole);
    std::vector<std::size_t> index = {0x01000002, 9, 0x63643030, 0, 0, 0}; // of chunks "00dc"
    for (const std::size_t chunk : chunks)
        index.insert(index.end(), {chunk, whole[chunk - 4] | std::size_t{whole[chunk - 3]} << 8});
    auto place = std::search(whole.begin(), whole.end(), "JUNK", "JUNK" + 4);
    std::copy_n("indx", 4, place);
    place += 8;
    for (const std::size_t word : index)
        for (int k = 0; k < 32; k += 8)
            *place++ = static_cast<std::uint8_t>(word >> k);
    for (const std::size_t end : {chunks[5] + 9, chunks[5], chunks[5] - 3, chunks[5] - 8}) {
        folder.write("clip.avi", std::span(whole).first(end));
        const open_clip clip(path);
        ASSERT_EQ(clip.length(), 9);
        for (const int number : jumps(9))
            ASSERT_EQ(number_in(clip.pixels(number)), std::min(number, 4)) << number;
    }
}

TEST(damaged_clips, damaged_bytes_do_no_harm) {
    const temp_folder folder;
    const std::string path = folder.path("clip.avi");
    ASSERT_TRUE(clip_files::write(path, numbered_pictures(64, 48, 12),
                                  {.codec = AV_CODEC_ID_MPEG4, .pixels = AV_PIX_FMT_YUV420P, .between = 1}));
    const bytes whole = folder.read("clip.avi");
    std::mt19937 random(9);
    for (int round = 0; round < 300; ++round) {
        bytes file = whole;
        const std::size_t reach = round % 2 == 0 ? 400 : file.size(); // the head more often
        for (int k = 0; k <= round % 7; ++k)
            file[random() % reach] = static_cast<std::uint8_t>(random());
        folder.write("clip.avi", file);
        read_somewhere(path);
    }
}

TEST(damaged_clips, what_is_no_clip_is_refused_in_one_line) {
    const temp_folder folder;
    folder.write("empty.avi", "");
    folder.write("text.avi", "this is no clip at all, but it is long enough to be looked at");
    ASSERT_TRUE(clip_files::write(folder.path("good.avi"), numbered_pictures(64, 48, 2), {}));
    const bytes good = folder.read("good.avi");
    bytes no_frames(good.begin(),
                    good.begin() + static_cast<std::ptrdiff_t>(picture_chunks(good).front() - 8));
    folder.write("no_frames.avi", no_frames);
    const auto format = std::search(good.begin(), good.end(), "strf", "strf" + 4) - good.begin();
    for (const auto& [name, size] : {std::pair{"wide.avi", 100000}, {"large.avi", 8000}, {"none.avi", 0}}) {
        bytes file = good;
        for (const std::ptrdiff_t side : {12, 16}) // the sides behind the head's own size
            for (int k = 0; k < 4; ++k)
                file[static_cast<std::size_t>(format + side + k)] =
                    static_cast<std::uint8_t>(size >> (8 * k));
        folder.write(name, file);
    }
    for (const char* name :
         {"empty.avi", "text.avi", "no_frames.avi", "wide.avi", "large.avi", "none.avi", "missing.avi", ""}) {
        captured_descriptor line(STDERR_FILENO);
        const open_clip clip(folder.path(name));
        const std::string text = line.text();
        EXPECT_EQ(clip.result, avi::not_readable) << name;
        EXPECT_EQ(clip.stream, nullptr) << name;
        EXPECT_EQ(clip.access, nullptr) << name;
        const bool there = std::filesystem::exists(folder.path(name)); // else the caller's box is enough
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), there ? 1 : 0) << text;
        EXPECT_EQ(text.find("morvane: " + folder.path(name) + ": ") == 0, there) << text;
    }
}

TEST(damaged_clips, files_that_change_while_they_are_open_do_no_harm) {
    const temp_folder folder;
    const std::string path = folder.path("clip.avi");
    const clip_files::form form{.codec = AV_CODEC_ID_MPEG4, .pixels = AV_PIX_FMT_YUV420P, .between = 2};
    ASSERT_TRUE(clip_files::write(path, numbered_pictures(64, 48, 60), form));
    const bytes whole = folder.read("clip.avi");
    for (const std::size_t left : {std::size_t{0}, whole.size() / 2}) {
        folder.write("clip.avi", whole);
        const open_clip clip(path);
        EXPECT_EQ(number_in(clip.pixels(50)), 50);
        bytes other(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(left));
        other.resize(whole.size(), 0xa5);
        folder.write("clip.avi", other); // into the same file
        for (const int number : jumps(60))
            clip.frame(number);
        avi::stream_info info{};
        EXPECT_EQ(AVIStreamInfoA(clip.stream, &info, sizeof info), avi::ok);
        EXPECT_EQ(info.length, 60U);
        EXPECT_EQ(AVIStreamSampleToTime(clip.stream, 25), 1000);
    }
}

} // namespace
