// The switches of the log channel, in every combination.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "morvane/base/log.h"
#include "tests/support/captured_output.h"

namespace {

const char* tag(std::uint32_t level) {
    const char* tags[] = {"[-]", "[ERROR]", "[W]", "[N]", "[D]"};
    int bit = 0;
    while ((1U << bit) != level)
        ++bit;
    return tags[bit];
}

// Leaves the channel as it was found.
struct switched_channel {
    explicit switched_channel(const log_switches& switches) { log_channel = switches; }
    ~switched_channel() { log_channel = {}; }
};

} // namespace

TEST(log_channel, every_switch_decides_for_itself) {
    for (const bool enabled : {false, true})
        for (const bool to_file : {false, true})
            for (const bool to_stdout : {false, true})
                for (const std::uint32_t mask : {0U, 2U, 21U, 31U})
                    for (const std::uint32_t level : {1U, 2U, 4U, 8U, 16U})
                        for (const int critical : {0, 1}) {
                            char* text = nullptr;
                            std::size_t size = 0;
                            std::FILE* file = open_memstream(&text, &size);
                            const switched_channel channel({.enabled = enabled,
                                                            .level_mask = mask,
                                                            .to_file = to_file,
                                                            .log_file = file,
                                                            .to_stdout = to_stdout});
                            captured_output printed;
                            const int result = log_message("the message", level, critical);
                            printed.stop();
                            std::fclose(file);

                            const bool written = enabled && (mask & level) != 0;
                            const std::string line = std::string(tag(level)) + " the message\n";
                            const std::string cry =
                                critical == 1 ? "A critical error occured: the message\n" : "";
                            EXPECT_EQ(result, critical == 1 ? 0 : 1);
                            EXPECT_EQ(std::string(text, size), written && to_file ? line : "");
                            EXPECT_EQ(printed.out(), (written && to_stdout ? line : "") + cry);
                            EXPECT_EQ(printed.err(), "");
                            std::free(text);
                        }
}

TEST(log_channel, all_is_off_at_start_and_a_missing_stream_is_no_sink) {
    EXPECT_FALSE(log_wanted(log_error));
    captured_output printed;
    EXPECT_EQ(log_message("quiet", log_error, 0), 1);
    EXPECT_EQ(log_message("loud %s", log_error, 1), 0);
    const switched_channel channel({.enabled = true, .level_mask = 31, .to_file = true});
    EXPECT_FALSE(log_wanted(log_error));
    EXPECT_EQ(log_message("to nowhere", log_trace, 0), 1);
    EXPECT_EQ(printed.out(), "A critical error occured: loud %s\n");
}
