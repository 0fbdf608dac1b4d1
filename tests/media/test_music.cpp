// The music player, on a sound layer that writes down what is called.
#include "morvane/media/music.h"

#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "morvane/platform/sound/bass.h"
#include "tests/support/captured_output.h"
#include "tests/support/environment.h"

static_assert(!std::is_copy_constructible_v<music> && !std::is_copy_assignable_v<music>);

namespace {

using calls = std::vector<std::string>;

// What the recording layer answers, and what it was asked.
struct recording {
    calls called;
    std::uint32_t version = 0x50001;
    std::uint32_t init_result = 1;
    std::uint32_t track = 77; // the handle of the next track
};
recording record;

template<typename... Arguments>
void note(const char* name, const Arguments&... arguments) {
    std::ostringstream line;
    line << name;
    [[maybe_unused]] const char* before = "";
    line << "(";
    ((line << before << arguments, before = ", "), ...);
    line << ")";
    record.called.push_back(line.str());
}

const char* name_of(const void* file) {
    return static_cast<const char*>(file);
}

constexpr bass::sound_layer recording_layer{
    .get_version =
        [] {
            note("GetVersion");
            return record.version;
        },
    .init =
        [](std::int32_t device, std::uint32_t frequency, std::uint32_t flags, void* window) {
            note("Init", device, frequency, flags, window == nullptr);
            return record.init_result;
        },
    .start =
        [] {
            note("Start");
            return 1U;
        },
    .music_load =
        [](bool memory, const void* file, std::uint32_t offset, std::uint32_t length, std::uint32_t flags) {
            note("MusicLoad", memory, name_of(file), offset, length, flags);
            return record.track;
        },
    .stream_create_file =
        [](bool memory, const void* file, std::uint32_t offset, std::uint32_t length, std::uint32_t flags) {
            note("StreamCreateFile", memory, name_of(file), offset, length, flags);
            return record.track;
        },
    .channel_set_sync =
        [](std::uint32_t handle, std::uint32_t type, std::uint32_t parameter, bass::sync_function callback,
           void* user) {
            note("ChannelSetSync", handle, type, parameter, callback == nullptr, user == nullptr);
            return 1U;
        },
    .music_play =
        [](std::uint32_t handle) {
            note("MusicPlay", handle);
            return 1U;
        },
    .stream_play =
        [](std::uint32_t handle, bool flush, std::uint32_t flags) {
            note("StreamPlay", handle, flush, flags);
            return 1U;
        },
    .free =
        [] {
            note("Free");
            return 1U;
        },
};

// Every test: a fresh recording, no display, standard error caught.
class music_test : public testing::Test {
  protected:
    music_test() {
        record = {};
        bass::set_sound_layer(&recording_layer);
    }
    ~music_test() override { bass::set_sound_layer(nullptr); }

    static calls taken() { return std::exchange(record.called, {}); }

    no_display display;
    captured_output printed;
};

const std::string title = "Morvane Demosystem: Error: ";

} // namespace

TEST_F(music_test, a_fresh_player_has_no_track) {
    {
        music player;
        EXPECT_EQ(player.handle, 0U);
        EXPECT_EQ(player.extension, nullptr);
        EXPECT_FALSE(player.recognised);
        EXPECT_EQ(player.kind, -1);
        EXPECT_EQ(player.play(), 1);
        EXPECT_EQ(taken(), calls{});
    }
    EXPECT_EQ(taken(), calls{"Free()"}); // the destructor
}

TEST_F(music_test, init_asks_for_the_version_then_opens_and_starts_the_device) {
    music player;
    EXPECT_EQ(player.init(), 1);
    EXPECT_EQ(taken(), (calls{"GetVersion()", "Init(-1, 44100, 16, 1)", "Start()"}));

    record.init_result = 0;
    for (int tries = 0; tries < 2; ++tries) { // which are told once
        EXPECT_EQ(player.init(), -1);
        EXPECT_EQ(taken(), (calls{"GetVersion()", "Init(-1, 44100, 16, 1)"}));
    }

    record.version = 0x50002;
    EXPECT_EQ(player.init(), 1);
    EXPECT_EQ(taken(), calls{"GetVersion()"});
    EXPECT_EQ(printed.err(),
              title + "Can't initialize device\n" + title + "BASS version 1.5 was not loaded\n");
}

TEST_F(music_test, the_six_kinds_in_any_case) {
    music player; // free, and then the next one
    for (const std::string path :
         {"data/a.MOD", "a.mod", "a.S3M", "a.s3m", "x.y/a.XM", "a.b.xM", "a.IT", "a.it"}) {
        EXPECT_EQ(player.load(path.c_str()), 1);
        EXPECT_EQ(player.handle, 77U);
        EXPECT_EQ(player.kind, 0);
        EXPECT_TRUE(player.recognised);
        EXPECT_EQ(player.extension, path.c_str() + path.rfind('.') + 1);
        EXPECT_EQ(player.play(), 1);
        player.free();
        EXPECT_EQ(taken(), (calls{"MusicLoad(0, " + path + ", 0, 0, 5)", "MusicPlay(77)", "Free()"}));
    }
    for (const std::string path :
         {"data/music/Ashwing1.mp3", "TRACK.Mp3", "data/music/a_test2.ogg", "../a.OGG"}) {
        EXPECT_EQ(player.load(path.c_str()), 1);
        EXPECT_EQ(player.kind, 1);
        EXPECT_EQ(player.play(), 1);
        EXPECT_EQ(taken(), (calls{"StreamCreateFile(0, " + path + ", 0, 0, 0)",
                                  "ChannelSetSync(77, 2, 0, 1, 1)", "StreamPlay(77, 0, 4)"}));
    }
    EXPECT_EQ(printed.err(), "");
}

TEST_F(music_test, an_unknown_extension_gets_one_message_until_one_was_known) {
    constexpr const char* unknown[] = {"track.wav",  "folder.mp3/track", "track",      "",    "track.",
                                       "track.mp3x", "track.m",          "track.mp3 ", "mp3", "a.s3"};
    for (const char* path : unknown) {
        record.called.clear();
        music player;
        EXPECT_EQ(player.load(path), 1) << path;
        EXPECT_EQ(player.play(), 1);
        EXPECT_EQ(player.kind, -1);
        EXPECT_EQ(taken(), calls{});
        EXPECT_EQ(player.extension == nullptr, std::string_view(path).find('.') == std::string_view::npos);
    }
    music player;
    EXPECT_EQ(player.load(nullptr), 1);
    EXPECT_EQ(player.load("a.ogg"), 1);
    EXPECT_EQ(player.load("b.wav"), 1); // no message any more, and the track stays
    EXPECT_STREQ(player.extension, "wav");
    EXPECT_EQ(player.kind, 1);
    EXPECT_EQ(player.play(), 1);
    EXPECT_EQ(taken().back(), "StreamPlay(77, 0, 4)");

    std::string messages;
    for (std::size_t i = 0; i <= std::size(unknown); i++)
        messages += title + "Music format extension not found!\n";
    EXPECT_EQ(printed.err(), messages);
}

TEST_F(music_test, a_refused_file_is_silent_and_leaves_the_kind) {
    music player;
    record.track = 0;
    EXPECT_EQ(player.load("a.xm"), 0);
    EXPECT_EQ(player.load("a.mp3"), 0);
    EXPECT_TRUE(player.recognised);
    EXPECT_EQ(player.kind, -1);
    EXPECT_EQ(player.play(), 1);
    EXPECT_EQ(taken(), (calls{"MusicLoad(0, a.xm, 0, 0, 5)", "StreamCreateFile(0, a.mp3, 0, 0, 0)"}));

    EXPECT_EQ(player.load("a.wav"), 1); // an extension was known, if not a track: no message

    record.track = 5;
    EXPECT_EQ(player.load("a.it"), 1);
    record.track = 0;
    EXPECT_EQ(player.load("b.ogg"), 0);
    EXPECT_EQ(player.kind, 0);
    EXPECT_EQ(player.handle, 0U);
    EXPECT_EQ(printed.err(), "");
}

TEST_F(music_test, a_report_is_cut_to_199_characters) {
    music player;
    player.report("100% %s %n");
    player.report(std::string(199, 'a').c_str());
    player.report(std::string(5000, 'b').c_str());
    player.report(nullptr);
    EXPECT_EQ(printed.err(), title + "100% %s %n\n" + title + std::string(199, 'a') + "\n" + title +
                                 std::string(199, 'b') + "\n" + title + "\n");
}
