// The sound layer with its real mixer and decoders; what it plays goes to a file.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <numbers>
#include <random>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "morvane/media/music.h"
#include "morvane/platform/console/ptc.h"
#include "morvane/platform/sound/bass.h"
#include "morvane/platform/sound/inner/bass_fade.h"
#include "morvane/platform/sound/inner/bass_formats.h"
#include "tests/support/captured_output.h"
#include "tests/support/environment.h"
#include "tests/support/module_files.h"
#include "tests/support/stream_files.h"
#include "tests/support/temp_file.h"

namespace {

using bytes = std::vector<std::uint8_t>;
using sound = std::vector<std::int16_t>; // left and right in turn

// A device that writes to the file "sound" many times as fast as a real one plays.
class bass_test : public testing::Test {
  protected:
    ~bass_test() override { BASS_Free(); }

    // Waits until the device has written another `frames`; false if it doesn't come to it.
    bool wait_for(std::size_t frames) const {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        const std::uintmax_t enough = size() + frames * 4;
        while (size() < enough) {
            if (std::chrono::steady_clock::now() > end) return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return true;
    }
    std::uintmax_t size() const {
        std::error_code none;
        const std::uintmax_t now = std::filesystem::file_size(folder.path("sound"), none);
        return none ? 0 : now;
    }
    sound recorded() const {
        const bytes written = folder.read("sound");
        sound samples(written.size() / 2);
        std::memcpy(samples.data(), written.data(), samples.size() * 2);
        return samples;
    }

    captured_output library_messages; // of the file device and of decoders that meet bad bytes
    temp_folder folder;
    no_display display;
    environment_variable driver{"SDL_AUDIODRIVER", "disk"};
    environment_variable file{"SDL_DISKAUDIOFILE", folder.path("sound").c_str()};
    environment_variable pace{"SDL_DISKAUDIODELAY", "1"};
};

int loudest(std::span<const std::int16_t> samples) {
    int level = 0;
    for (const std::int16_t sample : samples)
        level = std::max(level, std::abs(int{sample}));
    return level;
}

// The largest step from one sample of the left side to the next.
int largest_step(std::span<const std::int16_t> samples) {
    int step = 0;
    for (std::size_t i = 2; i < samples.size(); i += 2)
        step = std::max(step, std::abs(samples[i] - samples[i - 2]));
    return step;
}

// The frames from the first to the last that are louder than `level`.
std::size_t stretch(const sound& samples, int level) {
    const auto loud = [=](std::int16_t sample) { return std::abs(int{sample}) > level; };
    const auto first = std::find_if(samples.begin(), samples.end(), loud);
    const auto last = std::find_if(samples.rbegin(), samples.rend(), loud).base();
    return first < last ? static_cast<std::size_t>(last - first) / 2 : 0;
}

// The last `count` samples before the silence at the end, which lasts as long as closing takes, and a frame
// of that silence.
std::span<const std::int16_t> end_of_sound(const sound& samples, std::size_t count) {
    const auto last = std::find_if(samples.rbegin(), samples.rend(), [](std::int16_t s) { return s != 0; });
    const auto heard = static_cast<std::size_t>(last.base() - samples.begin()) / 2 * 2;
    const std::size_t end = std::min(samples.size(), heard + 4);
    return std::span(samples).first(end).last(std::min(count, end));
}

// A tone of 441 Hz: `loud` frames at half of full scale, `quiet` ones at a twentieth.
std::vector<float> tone(std::size_t loud, std::size_t quiet) {
    std::vector<float> samples(loud + quiet);
    for (std::size_t i = 0; i < samples.size(); i++) {
        const double wave = std::sin(2 * std::numbers::pi * 441 / 44100 * static_cast<double>(i));
        samples[i] = static_cast<float>(wave * (i < loud ? 0.5 : 0.05));
    }
    return samples;
}

bytes noise(std::size_t size) {
    std::mt19937 random(1);
    bytes all(size);
    std::ranges::generate(all, [&] { return static_cast<std::uint8_t>(random()); });
    return all;
}

struct track_file {
    const char* name;
    bytes content;
};

std::vector<track_file> all_kinds() {
    const std::vector<float> samples = tone(22050, 0);
    return {{"a.mod", module_files::mod()},       {"old.MOD", module_files::mod(15)},
            {"a.s3m", module_files::s3m()},       {"a.xm", module_files::xm()},
            {"a.it", module_files::it()},         {"a.mp3", stream_files::mp3(samples)},
            {"a.ogg", stream_files::ogg(samples)}};
}

} // namespace

TEST_F(bass_test, every_kind_sounds_from_play_to_free) {
    for (const track_file& file_of_kind : all_kinds()) {
        SCOPED_TRACE(file_of_kind.name);
        music player;
        ASSERT_EQ(player.init(), 1);
        ASSERT_EQ(player.load(folder.write(file_of_kind.name, file_of_kind.content).c_str()), 1);
        ASSERT_TRUE(wait_for(2048));
        EXPECT_EQ(loudest(recorded()), 0); // not before `play`
        player.play();
        ASSERT_TRUE(wait_for(88200));
        player.free();

        const sound all = recorded();
        EXPECT_GT(stretch(all, 1000), 80000U);
        EXPECT_EQ(all.back(), 0);
        const std::uintmax_t end = size();
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        EXPECT_EQ(size(), end); // nobody writes any more
    }
}

TEST_F(bass_test, a_stream_begins_with_its_start_and_plays_to_its_end) {
    const std::vector<float> samples = tone(22050, 22050);
    for (const bytes& content : {stream_files::mp3(samples), stream_files::ogg(samples)}) {
        ASSERT_EQ(BASS_Init(-1, 44100, 16, nullptr), 1U);
        const std::uint32_t handle =
            BASS_StreamCreateFile(true, content.data(), 0, static_cast<std::uint32_t>(content.size()), 0);
        ASSERT_NE(handle, 0U);
        EXPECT_EQ(BASS_StreamPlay(handle, false, 0), 1U);
        ASSERT_TRUE(wait_for(100000));
        BASS_Free();
        EXPECT_NEAR(static_cast<double>(stretch(recorded(), 4000)), 22050, 500);
        EXPECT_NEAR(static_cast<double>(stretch(recorded(), 400)), 44100, 500);
    }
}

TEST_F(bass_test, tracks_loop_where_the_flag_says_so) {
    const bytes stream = stream_files::ogg(tone(11025, 11025));
    const bytes module = module_files::xm(4, false);
    const auto length = static_cast<std::uint32_t>(stream.size());
    const std::string path = folder.write("short.xm", module);
    for (const bool loop : {false, true}) {
        const std::uint32_t flag = loop ? 4 : 0;
        for (const bool is_stream : {true, false}) {
            ASSERT_EQ(BASS_Init(-1, 44100, 16, nullptr), 1U);
            const std::uint32_t handle = is_stream ? BASS_StreamCreateFile(true, stream.data(), 0, length, 0)
                                                   : BASS_MusicLoad(false, path.c_str(), 0, 0, flag | 1);
            EXPECT_EQ(is_stream ? BASS_StreamPlay(handle, false, flag) : BASS_MusicPlay(handle), 1U);
            ASSERT_TRUE(wait_for(44100 * 3));
            BASS_Free();
            const sound all = recorded();
            // Of three seconds: one round is half a second or less.
            EXPECT_EQ(stretch(all, 1000) > 100000, loop) << is_stream;
        }
    }
}

TEST_F(bass_test, free_fades_out_without_a_click_and_leaves_nothing) {
    const std::string path = folder.write("a.ogg", stream_files::ogg(tone(44100, 0)));
    const auto threads = [] {
        const std::filesystem::directory_iterator tasks("/proc/self/task");
        return std::distance(begin(tasks), end(tasks));
    };
    const auto threads_before = threads();
    music player;
    for (int round = 0; round < 3; round++) { // the hand-over from one track to the next
        player.init();
        player.load(path.c_str());
        player.play();
        ASSERT_TRUE(wait_for(20000 + 1000 * static_cast<std::size_t>(round)));
        player.free();
        EXPECT_EQ(threads(), threads_before);

        const sound all = recorded();
        EXPECT_EQ(all.back(), 0);
        EXPECT_GT(loudest(all), 15000);
        EXPECT_LT(largest_step(end_of_sound(all, 16000)), 1300); // the tone's own steepest step is 1029
    }
}

TEST_F(bass_test, a_process_that_exits_while_a_track_plays_ends_it_properly) {
    const std::string path = folder.write("a.ogg", stream_files::ogg(tone(22050, 0)));
    const auto exit_while_playing = [&] {
        music player;
        player.init();
        player.load(path.c_str());
        player.play();
        wait_for(20000);
        std::exit(3); // no destructor of `player`
    };
    EXPECT_EXIT(exit_while_playing(), testing::ExitedWithCode(3), "");
    const sound all = recorded();
    ASSERT_GT(loudest(all), 15000);
    EXPECT_EQ(all.back(), 0);
    EXPECT_LT(largest_step(end_of_sound(all, 16000)), 1300);
}

TEST_F(bass_test, the_window_stays_while_the_sound_goes) {
    const environment_variable in_memory("SDL_VIDEODRIVER", "dummy");
    ptc::Console console;
    const ptc::Format format(32, 0xff0000, 0xff00, 0xff);
    console.open("sound", 64, 64, format);
    for (int round = 0; round < 2; round++) {
        music player;
        EXPECT_EQ(player.init(), 1);
        player.free();
        EXPECT_NO_THROW(console.update());
    }
    console.close();
}

TEST(bass_fade, goes_from_one_to_nothing_within_15_milliseconds) {
    bass::fade_out fade;
    fade.reset(44100);
    sound samples(2000, 10000);
    fade.apply(samples);
    EXPECT_EQ(std::ranges::count(samples, 10000), 2000); // not begun
    fade.begin();
    fade.apply(std::span(samples).first(1000)); // 500 frames
    EXPECT_FALSE(fade.over());
    fade.apply(std::span(samples).last(1000));
    EXPECT_TRUE(fade.over());
    EXPECT_TRUE(std::ranges::is_sorted(samples, std::greater<>()));
    EXPECT_EQ(samples.front(), 10000);
    EXPECT_LT(largest_step(samples), 30); // 1.5 / 661 of the level
    EXPECT_EQ(stretch(samples, 0), 658U); // of 661; the last three are below 1
    sound after(64, -32768);
    fade.apply(after);
    EXPECT_EQ(loudest(after), 0);
}

TEST_F(bass_test, handles_are_distinct_and_know_their_kind) {
    const std::string stream = folder.write("a.ogg", stream_files::ogg(tone(4410, 0)));
    const std::string module = folder.write("a.mod", module_files::mod());
    EXPECT_EQ(BASS_GetVersion(), 0x50001U);
    EXPECT_EQ(BASS_MusicLoad(false, module.c_str(), 0, 0, 5), 0U); // no device yet
    EXPECT_EQ(BASS_Start(), 0U);
    EXPECT_EQ(BASS_Free(), 0U);
    EXPECT_EQ(BASS_Init(-1, 0, 0, nullptr), 0U);
    EXPECT_EQ(BASS_Init(7, 44100, 0, nullptr), 0U);
    ASSERT_EQ(BASS_Init(-1, 44100, 16, nullptr), 1U);
    EXPECT_EQ(BASS_Init(-1, 44100, 16, nullptr), 0U); // open already, and stays so
    EXPECT_EQ(BASS_Start(), 1U);

    const std::uint32_t first = BASS_MusicLoad(false, module.c_str(), 0, 0, 5);
    const std::uint32_t second = BASS_StreamCreateFile(false, stream.c_str(), 0, 0, 0);
    EXPECT_NE(first, 0U);
    EXPECT_NE(second, 0U);
    EXPECT_NE(first, second);
    EXPECT_EQ(BASS_StreamPlay(first, false, 4), 0U);
    EXPECT_EQ(BASS_MusicPlay(second), 0U);
    EXPECT_EQ(BASS_MusicPlay(0), 0U);
    EXPECT_EQ(BASS_ChannelSetSync(0, 2, 0, nullptr, nullptr), 0U);
    EXPECT_NE(BASS_ChannelSetSync(second, 2, 0, nullptr, nullptr), 0U);
    EXPECT_EQ(BASS_MusicPlay(first), 1U);
    EXPECT_EQ(BASS_StreamPlay(second, false, 4), 1U); // takes the place of the other
    EXPECT_EQ(BASS_StreamPlay(second, false, 4), 1U);
    EXPECT_EQ(BASS_StreamPlay(second, true, 4), 1U);
    EXPECT_EQ(BASS_Free(), 1U);

    EXPECT_EQ(BASS_StreamPlay(second, false, 4), 0U);
    ASSERT_EQ(BASS_Init(-1, 44100, 16, nullptr), 1U);
    const std::uint32_t third = BASS_StreamCreateFile(false, stream.c_str(), 0, 0, 0);
    EXPECT_NE(third, first);
    EXPECT_NE(third, second);
}

TEST_F(bass_test, a_part_of_a_file_is_a_track) {
    const bytes track = module_files::xm();
    bytes container(1000 + track.size() + 50, 1);
    std::ranges::copy(track, container.begin() + 1000);
    const std::string path = folder.write("container", container);
    const auto length = static_cast<std::uint32_t>(track.size());
    ASSERT_EQ(BASS_Init(-1, 44100, 16, nullptr), 1U);
    EXPECT_NE(BASS_MusicLoad(false, path.c_str(), 1000, length, 5), 0U);
    EXPECT_NE(BASS_MusicLoad(false, path.c_str(), 1000, 0, 5), 0U);
    EXPECT_EQ(BASS_MusicLoad(false, path.c_str(), 0, 0, 5), 0U);
    EXPECT_EQ(BASS_MusicLoad(false, path.c_str(), 1000, length + 51, 5), 0U);
    EXPECT_EQ(BASS_MusicLoad(false, path.c_str(), 0xffffffff, 0xffffffff, 5), 0U);
    EXPECT_EQ(BASS_MusicLoad(true, track.data(), 0, 0, 5), 0U);
    EXPECT_EQ(BASS_MusicLoad(false, nullptr, 0, 0, 5), 0U);
}

TEST_F(bass_test, without_a_device_there_is_one_line_and_silence) {
    const std::string path = folder.write("a.mp3", stream_files::mp3(tone(4410, 0)));
    const environment_variable device("AUDIODEV", "no-such-card");
    for (const char* missing : {"no-such-driver", "alsa"}) {
        const environment_variable no_driver("SDL_AUDIODRIVER", missing);
        captured_output printed;
        music player;
        EXPECT_EQ(player.init(), -1);
        EXPECT_EQ(player.load(path.c_str()), 0);
        EXPECT_EQ(player.play(), 1);
        player.free();
        EXPECT_EQ(printed.err(), "Morvane Demosystem: Error: Can't initialize device\n") << missing;
    }
}

TEST_F(bass_test, bad_files_are_refused_or_play_what_there_is) {
    std::mt19937 random(1);
    music player;
    ASSERT_EQ(player.init(), 1);
    captured_output printed; // from here on the device is silent
    for (const track_file& good : all_kinds()) {
        const std::size_t size = good.content.size();
        EXPECT_EQ(player.load(folder.path(std::string("missing-") + good.name).c_str()), 0);
        EXPECT_EQ(player.load(folder.write(good.name, "").c_str()), 0) << good.name;
        EXPECT_EQ(player.load(folder.write(good.name, noise(20000)).c_str()), 0) << good.name;
        EXPECT_EQ(player.load(folder.write(good.name, bytes(20000, 0)).c_str()), 0) << good.name;
        for (const std::size_t kept : {size / 16, size / 4, size / 2, size - size / 8, size - 1}) {
            const std::span part = std::span(good.content).first(kept);
            if (player.load(folder.write(good.name, part).c_str()) == 0) continue;
            player.play();
            EXPECT_TRUE(wait_for(10000)) << good.name << " cut at " << kept;
        }
        for (int round = 0; round < 10; round++) {
            bytes damaged = good.content;
            for (int i = 0; i < 8; i++)
                damaged[random() % size] = static_cast<std::uint8_t>(random());
            if (player.load(folder.write(good.name, damaged).c_str()) == 0) continue;
            player.play();
            EXPECT_TRUE(wait_for(10000)) << good.name << " damaged";
        }
    }
    std::filesystem::create_directory(folder.path("folder.ogg"));
    EXPECT_EQ(player.load(folder.path("folder.ogg").c_str()), 0);
    player.free();
    EXPECT_EQ(printed.err(), ""); // no decoder's complaints
}

TEST_F(bass_test, formats_are_told_by_content) {
    using enum bass::sound_format;
    const auto joined = [](std::initializer_list<bytes> parts) {
        bytes whole;
        for (const bytes& part : parts)
            whole.insert(whole.end(), part.begin(), part.end());
        return whole;
    };
    const bytes stream = stream_files::mp3(tone(4410, 0));
    bytes id3{'I', 'D', '3', 4, 0, 0, 0, 0, 10, 2}; // 1282 bytes that look like the start of frames
    id3.resize(10 + 1282, 0xff);
    bytes ape{'A', 'P', 'E', 'T', 'A', 'G', 'E', 'X', 0xd0, 7, 0, 0, 0, 0, 1, 0}; // 64 KiB
    ape.resize(32 + 65536, 0xfb);
    const bytes first(stream.begin(), stream.begin() + 417); // a frame of 128 kbit/s
    bytes other = first;
    other[2] ^= 4; // 48000 Hz

    const track_file fronts[] = {{"nothing", {}},
                                 {"a tag", id3},
                                 {"two tags", joined({id3, id3})},
                                 {"an APE tag", ape},
                                 {"both, with zeros", joined({ape, bytes(5000), id3, bytes(200000)})},
                                 {"other bytes", noise(6000)},
                                 {"a tag longer than the file", {'I', 'D', '3', 3, 0, 0, 99, 99, 99, 99}},
                                 {"a frame of another stream", joined({other, noise(1000)})}};
    ASSERT_EQ(BASS_Init(-1, 44100, 16, nullptr), 1U);
    for (const auto& [name, front] : fronts) {
        const bytes whole = joined({front, stream});
        EXPECT_EQ(bass::format_of(whole), mp3) << name;
        EXPECT_EQ(bass::mp3_start(whole), front.size()) << name;
        const auto length = static_cast<std::uint32_t>(whole.size());
        const std::uint32_t handle = BASS_StreamCreateFile(true, whole.data(), 0, length, 0);
        EXPECT_EQ(BASS_StreamPlay(handle, true, 0), 1U) << name;
    }
    EXPECT_EQ(bass::format_of(joined({id3, first})), mp3); // one frame only
    for (const bytes& no_sound : {joined({first, other, noise(100)}), joined({first, noise(1000)}), id3, ape,
                                  noise(1000000), bytes(100000, 0xff), bytes(100000), bytes{}})
        EXPECT_EQ(bass::format_of(no_sound), none) << no_sound.size();

    for (const bytes& file_of_module : {module_files::mod(), module_files::mod(15), module_files::s3m(),
                                        module_files::xm(), module_files::it()})
        EXPECT_EQ(bass::format_of(file_of_module), module);
    EXPECT_EQ(bass::format_of(stream_files::ogg(tone(4410, 0))), ogg);
    const bytes tagged = joined({id3, ape, stream});
    for (std::size_t size = 1; size < 3000; size++) // inside the bounds, whatever the length
        bass::format_of(bytes(tagged.begin(), tagged.begin() + static_cast<std::ptrdiff_t>(size)));
}
