// Adding files on a disk that fails and with memory that falls short, step by step.
#include <gtest/gtest.h>

#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <filesystem>

#include "morvane/mopak/mopak.h"
#include "tests/support/captured_output.h"
#include "tests/support/failing_calls.h"
#include "tests/support/pack_files.h"
#include "tests/support/temp_file.h"

namespace {

// An archive of two files, and a third one that is to be added.
class mopak_disk : public testing::Test {
  protected:
    mopak_disk() {
        std::filesystem::current_path(folder.path());
        for (const packed_file& file : files)
            folder.write(file.name, file.data);
        folder.write("whole.mop", archive_of({files[0], files[1]}));
        start_anew();
    }
    ~mopak_disk() override { std::filesystem::current_path("/"); }

    void start_anew() {
        std::filesystem::copy_file("whole.mop", "a.mop", std::filesystem::copy_options::overwrite_existing);
        archive = std::make_unique<mopak>();
        EXPECT_EQ(archive->open("a.mop"), 1);
    }

    bool untouched() const { return folder.read("a.mop") == folder.read("whole.mop"); }

    // Adds the third file while a call fails; returns what was printed.
    std::string add_with(failing_call kind, int number) {
        captured_output printed;
        fail_call(kind, number);
        const int result = archive->addfile("c");
        EXPECT_TRUE(stop_failing()) << "so many calls there are not";
        EXPECT_EQ(result, 0);
        return printed.out();
    }

    void expect_whole_with(std::vector<packed_file> expected) const {
        EXPECT_EQ(files_in(folder.read("a.mop")), expected);
    }

    temp_folder folder;
    std::vector<packed_file> files{{"a", random_bytes(300, 200, 1)},
                                   {"b", random_bytes(5000, 20, 2)},
                                   {"c", random_bytes(2000, 256, 3)},
                                   {"d", random_bytes(40, 256, 4)}};
    std::unique_ptr<mopak> archive;
};

struct failing_step {
    failing_call kind;
    int number;
    const char* message;
};

} // namespace

TEST_F(mopak_disk, a_failure_before_the_first_write_leaves_the_archive_as_it_is) {
    for (const auto& [kind, number, message] :
         {failing_step{failing_call::open, 1, "Unable to open file to be added!"},
          {failing_call::array, 1, "Unable to create raw buffer!"},
          {failing_call::read, 1, "Reading file data failed!"},
          {failing_call::array, 2, "Unable to encode data!"},
          {failing_call::array, 3, "Unable to encode data!"},
          {failing_call::object, 1, "Could not create mopak_file!"},
          {failing_call::array, 4, "Could not create mopak_file_single!"},
          {failing_call::open, 2, "Unable to open archive to be extended!"}}) {
        EXPECT_EQ(add_with(kind, number), critical(message));
        EXPECT_TRUE(untouched()) << message;
        EXPECT_EQ(archive->find("c"), nullptr);
        EXPECT_EQ(archive->addfile("c"), 1); // a second try is as good as a first
        expect_whole_with({files[0], files[1], files[2]});
        start_anew();
    }
}

TEST_F(mopak_disk, a_failed_write_damages_the_archive_until_the_next_addition) {
    for (const auto& [kind, number, message] :
         {failing_step{failing_call::write, 1, "Writing compressed file to archive failed!"},
          {failing_call::array, 5, "Unable to encode TOC!"},
          {failing_call::array, 6, "Unable to encode TOC!"},
          {failing_call::write, 2, "Writing new TOC to archive failed!"},
          {failing_call::write, 3, "Writing new header to archive failed!"},
          {failing_call::close, 2, "Writing new header to archive failed!"}})
        for (const char* next : {"c", "d"}) {
            EXPECT_EQ(add_with(kind, number), critical(message));
            EXPECT_FALSE(untouched());
            EXPECT_NE(archive->find("c"), nullptr); // it is in the list
            EXPECT_EQ(add_with(failing_call::read, 1), critical("Reading file data failed!"));
            EXPECT_EQ(archive->addfile(next), 1);
            expect_whole_with({files[0], files[1], files[next[0] == 'c' ? 2 : 3]});
            EXPECT_EQ(archive->addfile("a"), 1);
            start_anew();
        }
}

TEST_F(mopak_disk, a_disk_that_is_full_at_any_byte) {
    std::signal(SIGXFSZ, SIG_IGN);
    EXPECT_EQ(archive->addfile("c"), 1);
    const pack_bytes with_c = folder.read("a.mop");
    rlimit former{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &former), 0);
    const rlim_t size = with_c.size();
    for (rlim_t most = 276; most<size; most += most + 200> size ? 1U : 101U) {
        start_anew();
        captured_output printed;
        const rlimit limit{most, former.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        const int result = archive->addfile("c");
        setrlimit(RLIMIT_FSIZE, &former);
        const std::string said = printed.out();
        ASSERT_EQ(result, 0) << most;
        ASSERT_EQ(said, critical(most < static_cast<rlim_t>(number_at(with_c, 272))
                                     ? "Writing compressed file to archive failed!"
                                     : "Writing new TOC to archive failed!"));
        ASSERT_EQ(archive->addfile("c"), 1);
        ASSERT_EQ(folder.read("a.mop"), with_c);
    }
    std::signal(SIGXFSZ, SIG_DFL);
}

TEST_F(mopak_disk, many_at_once_end_with_a_failing_disk) {
    const std::string names[] = {"c", "d"};
    for (const int write : {1, 2, 3, 4}) { // two blocks, table, header
        captured_output quiet;
        fail_call(failing_call::write, write);
        EXPECT_EQ(archive->addfiles(names), 0);
        EXPECT_TRUE(stop_failing());
        EXPECT_EQ(archive->find("d") != nullptr, write > 1); // nothing follows a failure
        EXPECT_EQ(archive->addfile("c"), 1);
        expect_whole_with({files[0], files[1], files[2]});
        EXPECT_EQ(archive->addfiles(names), 1);
        expect_whole_with(files);
        start_anew();
    }
    // Memory for a larger table falls short after something was written: what was written still gets in.
    captured_output printed;
    fail_call(failing_call::array, 8);
    EXPECT_EQ(archive->addfiles(names), 0);
    EXPECT_TRUE(stop_failing());
    EXPECT_EQ(printed.out(), critical("Could not create mopak_file_single!"));
    expect_whole_with({files[0], files[1], files[2]});
}

TEST_F(mopak_disk, creating_fails_and_the_object_stays) {
    for (const auto& [kind, message] : {std::pair{failing_call::open, "Unable to create file!"},
                                        {failing_call::write, "Could not write header!"},
                                        {failing_call::close, "Could not write header!"}}) {
        captured_output printed;
        fail_call(kind, 1);
        EXPECT_EQ(archive->create("b.mop", "another text"), 0);
        stop_failing();
        EXPECT_EQ(printed.out(), critical(message));
    }
    EXPECT_EQ(archive->addfile("c"), 1);
    EXPECT_EQ(folder.read("a.mop"), archive_of({files[0], files[1], files[2]}));
}

TEST_F(mopak_disk, opening_and_reading_with_memory_that_falls_short) {
    const auto open_with = [&](failing_call kind, int number, int expected) {
        captured_output printed;
        fail_call(kind, number);
        EXPECT_EQ(archive->open("whole.mop"), expected);
        EXPECT_TRUE(stop_failing());
        return printed.out();
    };
    EXPECT_EQ(open_with(failing_call::open, 1, 0), critical("Unable to open archive!"));
    EXPECT_EQ(open_with(failing_call::read, 2, 0), critical("Unable to read TOC!"));
    EXPECT_EQ(open_with(failing_call::array, 1, -1), critical("Not enough memory for TOC!"));
    EXPECT_EQ(open_with(failing_call::array, 2, 0), critical("Unable to decode TOC!"));
    EXPECT_EQ(archive->addfile("c"), 1); // to a.mop, as before
    expect_whole_with({files[0], files[1], files[2]});

    EXPECT_EQ(open_with(failing_call::object, 2, 0), critical("Unable to create mopak_file!"));
    EXPECT_STREQ(archive->first->name, "a"); // what was built stays
    EXPECT_EQ(archive->first, archive->last);
    captured_output quiet;
    EXPECT_EQ(archive->addfile("d"), 0); // but nothing is written by half a list
    expect_whole_with({files[0], files[1], files[2]});

    start_anew();
    for (const auto& [kind, number] : {std::pair{failing_call::open, 1},
                                       {failing_call::array, 1},
                                       {failing_call::read, 1},
                                       {failing_call::array, 2}}) {
        fail_call(kind, number);
        EXPECT_EQ(archive->getdata("b"), nullptr);
        EXPECT_TRUE(stop_failing());
        EXPECT_NE(archive->getdata("b"), nullptr);
    }
    fail_call(failing_call::read, 1);
    EXPECT_EQ(archive->getdata("c"), nullptr); // a loose file
    EXPECT_TRUE(stop_failing());
}
