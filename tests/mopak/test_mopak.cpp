// Archives written and read: every byte of their form, what the methods print, what they refuse.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "morvane/base/log.h"
#include "morvane/mopak/mopak.h"
#include "morvane/mopak/writer.h"
#include "tests/support/captured_output.h"
#include "tests/support/pack_files.h"
#include "tests/support/temp_file.h"

namespace {

// Lines of these levels go to standard output as long as it lives.
struct logged_levels {
    explicit logged_levels(std::uint32_t mask) {
        log_channel = {.enabled = true, .level_mask = mask, .to_stdout = true};
    }
    ~logged_levels() { log_channel = {}; }
};

pack_bytes data_of(mopak& archive, const std::string& name) {
    std::size_t size = 0;
    const mopak_bytes data = archive.getdata(name, size);
    if (data == nullptr) return text_bytes("null");
    return {data.get(), data.get() + size};
}

// What `action` prints.
template<typename Action>
std::string printed_by(Action action) {
    captured_output printed;
    action();
    return printed.out();
}

// Files of every kind in a folder, which is the working directory meanwhile.
class mopak_files : public testing::Test {
  protected:
    mopak_files() {
        std::filesystem::current_path(folder.path());
        files = {{"tiny", text_bytes("x")},
                 {"data/zeros.bin", pack_bytes(70000)},
                 {"data/Text", text_bytes("the same words, the same words, the same words")},
                 {"data/text", text_bytes("another file, for case counts")},
                 {"random", random_bytes(100000, 256, 1)},
                 {"large", random_bytes(1500000, 7, 2)}};
        for (const packed_file& file : files)
            folder.write(file.name, file.data);
    }
    ~mopak_files() override { std::filesystem::current_path("/"); }

    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const packed_file& file : files)
            all.push_back(file.name);
        return all;
    }

    temp_folder folder;
    std::vector<packed_file> files;
};

} // namespace

TEST_F(mopak_files, a_new_archive_is_its_header) {
    mopak archive;
    archive.set_version(0x01020304, -2);
    EXPECT_EQ(archive.create("a.mop", "some text"), 1);
    const pack_bytes bytes = folder.read("a.mop");
    ASSERT_EQ(bytes.size(), 276U);
    EXPECT_EQ(text_at(bytes, 0), "some text");
    EXPECT_TRUE(std::all_of(bytes.begin() + 9, bytes.begin() + 256, [](auto byte) { return byte == 0; }));
    EXPECT_EQ(part_of(bytes, 256, 4), (pack_bytes{4, 3, 2, 1}));
    EXPECT_EQ(number_at(bytes, 260), -2);
    EXPECT_EQ(number_at(bytes, 264), 276);
    EXPECT_EQ(number_at(bytes, 268), 0);
    EXPECT_EQ(number_at(bytes, 272), 276);
}

TEST_F(mopak_files, every_file_added_lies_where_the_records_say_and_reads_back) {
    mopak archive;
    ASSERT_EQ(archive.create("a.mop", "info"), 1);
    for (std::size_t i = 0; i < files.size(); ++i) {
        ASSERT_EQ(archive.addfile(files[i].name), 1);
        const pack_bytes bytes = folder.read("a.mop");
        EXPECT_EQ(files_in(bytes), (std::vector(files.begin(), files.begin() + static_cast<long>(i) + 1)));
        EXPECT_EQ(number_at(bytes, 264), static_cast<std::int32_t>(bytes.size()));
        EXPECT_EQ(archive.header.total_size, number_at(bytes, 264));
        EXPECT_EQ(archive.header.toc_offset, number_at(bytes, 272));
        EXPECT_EQ(archive.header.file_count, number_at(bytes, 268));
    }
    EXPECT_EQ(folder.read("a.mop"), archive_of(files, "info")); // and so every single byte

    mopak again;
    ASSERT_EQ(again.open("a.mop"), 1);
    for (const packed_file& file : files) {
        EXPECT_EQ(data_of(archive, file.name), file.data);
        EXPECT_EQ(data_of(again, file.name), file.data);
        ASSERT_NE(again.find(file.name), nullptr);
        EXPECT_EQ(again.find(file.name)->raw_size, static_cast<std::int32_t>(file.data.size()));
    }
    EXPECT_EQ(again.find("TINY"), nullptr);
    EXPECT_EQ(again.find("tin"), nullptr);
    EXPECT_EQ(again.find("data"), nullptr);
}

TEST_F(mopak_files, a_file_added_twice_or_to_a_reopened_archive) {
    mopak archive;
    ASSERT_EQ(archive.create("a.mop", ""), 1);
    ASSERT_EQ(archive.addfile("tiny"), 1);
    const pack_bytes before = folder.read("a.mop");
    folder.write("tiny", std::string_view("changed meanwhile"));
    EXPECT_EQ(archive.addfile("tiny"), 1);
    EXPECT_EQ(folder.read("a.mop"), before);

    mopak again;
    ASSERT_EQ(again.open("a.mop"), 1);
    again.set_version(3, 4);
    EXPECT_EQ(again.addfile("tiny"), 1);
    EXPECT_EQ(folder.read("a.mop"), before); // the version waits for the next header
    EXPECT_EQ(again.addfile("data/Text"), 1);
    const pack_bytes bytes = folder.read("a.mop");
    EXPECT_EQ(files_in(bytes), (std::vector{files[0], files[2]}));
    EXPECT_EQ(number_at(bytes, 256), 3);
    EXPECT_EQ(number_at(bytes, 260), 4);
}

TEST_F(mopak_files, many_at_once_give_the_same_bytes_as_one_by_one) {
    mopak one_by_one, at_once, in_two;
    ASSERT_EQ(one_by_one.create("1.mop", "info") + at_once.create("2.mop", "info"), 2);
    for (const std::string& name : names())
        ASSERT_EQ(one_by_one.addfile(name), 1);
    EXPECT_EQ(at_once.addfiles(names()), 1);
    EXPECT_EQ(folder.read("2.mop"), folder.read("1.mop"));
    EXPECT_EQ(at_once.addfiles(names()), 1); // all are there
    EXPECT_EQ(at_once.addfiles({}), 1);
    EXPECT_EQ(folder.read("2.mop"), folder.read("1.mop"));

    // What can't be added is told, and keeps nothing else out.
    folder.write("empty", std::string_view());
    std::vector<std::string> some_wrong = names();
    some_wrong.insert(some_wrong.begin() + 1, {"missing", "tiny", "empty"});
    ASSERT_EQ(in_two.create("3.mop", "info"), 1);
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(in_two.addfiles(some_wrong), 0); }),
              critical("Unable to open file to be added!") + critical("Reading file data failed!"));
    EXPECT_EQ(folder.read("3.mop"), folder.read("1.mop"));
}

TEST_F(mopak_files, a_thousand_files_at_once_and_one_more) {
    std::vector<std::string> many;
    for (int i = 0; i < 1000; ++i) {
        many.push_back("many/" + std::to_string(i));
        folder.write(many.back(), many.back());
    }
    mopak archive;
    ASSERT_EQ(archive.create("a.mop", ""), 1);
    ASSERT_EQ(archive.addfiles(many), 1);
    ASSERT_EQ(archive.addfile("tiny"), 1);
    const std::vector<packed_file> stored = files_in(folder.read("a.mop"));
    ASSERT_EQ(stored.size(), 1001U);
    mopak again;
    ASSERT_EQ(again.open("a.mop"), 1);
    mopak_file *file = archive.first, *file_again = again.first;
    for (std::size_t i = 0; i < many.size(); ++i, file = file->next, file_again = file_again->next) {
        ASSERT_EQ(stored[i], (packed_file{many[i], text_bytes(many[i])}));
        ASSERT_EQ(archive.find(many[i]), file);
        ASSERT_EQ(again.find(many[i]), file_again);
        many[i][0] = 'M'; // case counts
        ASSERT_EQ(again.find(many[i]), nullptr);
    }
}

TEST_F(mopak_files, stale_bytes_behind_a_shorter_table_mean_nothing) {
    // A table stored without compression is longer than the next block and table together.
    const std::vector<packed_file> first(files.begin(), files.begin() + 1);
    const pack_bytes long_archive = archive_of(first, "", Z_NO_COMPRESSION);
    folder.write("a.mop", long_archive);
    mopak archive;
    ASSERT_EQ(archive.open("a.mop"), 1);
    ASSERT_EQ(archive.addfile("data/text"), 1);
    const pack_bytes bytes = folder.read("a.mop");
    EXPECT_EQ(bytes.size(), long_archive.size()); // never cut
    ASSERT_LT(number_at(bytes, 264), static_cast<std::int32_t>(bytes.size()));
    EXPECT_EQ(files_in(bytes), (std::vector{files[0], files[3]}));

    mopak again;
    ASSERT_EQ(again.open("a.mop"), 1);
    EXPECT_EQ(data_of(again, "data/text"), files[3].data);
    ASSERT_EQ(again.addfile("random"), 1);
    EXPECT_EQ(files_in(folder.read("a.mop")), (std::vector{files[0], files[3], files[4]}));
}

TEST_F(mopak_files, archives_of_another_writer_read_back) {
    folder.write("b.mop", archive_of(files, "by the book", 9));
    mopak archive;
    ASSERT_EQ(archive.open("b.mop"), 1);
    EXPECT_STREQ(archive.header.info, "by the book");
    for (const packed_file& file : files)
        EXPECT_EQ(data_of(archive, file.name), file.data);
    // An object that knows an archive already lets go of it.
    ASSERT_EQ(archive.addfile("b.mop"), 1);
    folder.write("c.mop", archive_of({files[0]}));
    ASSERT_EQ(archive.open("c.mop"), 1);
    EXPECT_EQ(archive.first, archive.last);
    EXPECT_STREQ(archive.first->name, "tiny");
    ASSERT_EQ(archive.create("d.mop", ""), 1);
    EXPECT_EQ(archive.first, nullptr);
    ASSERT_EQ(archive.addfile("tiny"), 1);
    EXPECT_EQ(folder.read("d.mop"), folder.read("c.mop"));
    ASSERT_EQ(archive.create("e.mop", "a text") + archive.create("e.mop", "b"), 2);
    EXPECT_EQ(part_of(folder.read("e.mop"), 0, 8), (pack_bytes{'b', 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(mopak_files, what_is_not_in_the_archive_is_a_plain_file) {
    mopak archive;
    EXPECT_EQ(data_of(archive, "tiny"), files[0].data); // even without an archive
    ASSERT_EQ(archive.create("a.mop", ""), 1);
    ASSERT_EQ(archive.addfile("tiny"), 1);
    folder.write("tiny", std::string_view("loose"));
    folder.write("empty", std::string_view());
    const logged_levels all(30);
    EXPECT_EQ(printed_by([&] {
                  EXPECT_EQ(data_of(archive, "tiny"), files[0].data);
                  EXPECT_EQ(data_of(archive, "random"), files[4].data);
                  EXPECT_NE(archive.getdata("random"), nullptr); // without its size
              }),
              "");
    EXPECT_EQ(printed_by([&] {
                  EXPECT_EQ(data_of(archive, "nowhere"), text_bytes("null"));
                  EXPECT_EQ(data_of(archive, "data"), text_bytes("null")); // a folder
              }),
              "[W] Could not find a file containing data.\n[W] Could not find a file containing data.\n");
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(data_of(archive, "empty"), text_bytes("null")); }),
              "[ERROR] Reading external file failed.\n" + critical("Reading external file failed."));
}

TEST_F(mopak_files, what_does_not_fit_is_refused_and_harms_nothing) {
    mopak archive;
    ASSERT_EQ(archive.create("a.mop", std::string(254, 'i')), 1);
    const std::string longest = "data/" + std::string(250, 'n');
    folder.write(longest, std::string_view("fits"));
    folder.write(longest + "n", std::string_view("doesn't"));
    ASSERT_EQ(archive.addfile(longest), 1);
    const pack_bytes before = folder.read("a.mop");
    folder.write("empty", std::string_view());
    const std::pair<std::string, std::string> refused[] = {
        {"missing", "Unable to open file to be added!"},
        {"data", "Unable to open file to be added!"},
        {"", "Unable to open file to be added!"},
        {"empty", "Reading file data failed!"},
        {longest + "n", "The name is too long for an archive!"},
        {std::string("tiny\0y", 6), "The name is too long for an archive!"},
    };
    for (const auto& [name, message] : refused)
        EXPECT_EQ(printed_by([&, which = name] { EXPECT_EQ(archive.addfile(which), 0); }), critical(message));
    std::filesystem::resize_file(folder.write("huge", std::string_view("x")), 2147483648U); // takes no room
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(archive.addfile("huge"), 0); }),
              critical("The file is too large for an archive!"));
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(archive.create("b.mop", std::string(255, 'i')), 0); }),
              critical("The info text is too long!"));
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(archive.create("missing/b.mop", ""), 0); }),
              critical("Unable to create file!"));
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(archive.create("/dev/full", ""), 0); }),
              critical("Could not write header!"));
    EXPECT_EQ(folder.read("a.mop"), before);
    EXPECT_FALSE(std::filesystem::exists("b.mop"));
    EXPECT_EQ(archive.addfile("tiny"), 1); // the object is still bound to it
    EXPECT_EQ(text_at(folder.read("a.mop"), 0), std::string(254, 'i'));
    EXPECT_EQ(files_in(folder.read("a.mop")).size(), 2U);

    mopak unbound;
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(unbound.addfile("tiny"), 0); }),
              critical("Unable to open archive to be extended!"));
    EXPECT_EQ(unbound.first, nullptr);
}

TEST_F(mopak_files, an_archive_takes_as_many_files_as_can_be_opened_again) {
    const auto many = [&](std::int32_t count) {
        const pack_bytes block = zlib_packed(files[0].data);
        std::vector<pack_record> records;
        for (std::int32_t i = 0; i < count; ++i)
            records.push_back({std::to_string(i), 1, static_cast<std::int32_t>(block.size()), 276});
        return archive_of(block, records);
    };
    constexpr std::int32_t most = 3145728 / 268;
    folder.write("a.mop", many(most - 1));
    mopak archive;
    ASSERT_EQ(archive.open("a.mop"), 1);
    EXPECT_EQ(archive.addfile("tiny"), 1);
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(archive.addfile("random"), 0); }),
              critical("The archive holds as many files as can be opened again!"));
    ASSERT_EQ(archive.open("a.mop"), 1);
    EXPECT_EQ(data_of(archive, "tiny"), files[0].data);
    EXPECT_EQ(archive.header.file_count, most);

    folder.write("b.mop", many(most + 1));
    const logged_levels errors(log_error);
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(archive.open("b.mop"), 0); }),
              "[ERROR] zlib returned Z_BUF_ERROR in encode!\n[ERROR] Unable to decode TOC!\n" +
                  critical("Unable to decode TOC!"));
}

TEST_F(mopak_files, an_archive_does_not_pass_2_gib) {
    // Blocks that nobody wrote: a hole in the file.
    const laid_files laid = lay_out({files[0]});
    const pack_bytes small = archive_of(laid.blocks, laid.records);
    const std::int32_t toc_offset = number_at(small, 272);
    const auto toc = part_of(small, toc_offset, static_cast<std::int32_t>(small.size()) - toc_offset);
    constexpr std::int32_t far = 2147400000;
    pack_bytes header = part_of(small, 0, 276);
    put_number(header, 272, far);
    put_number(header, 264, far + static_cast<std::int32_t>(toc.size()));
    const std::string path = folder.write("a.mop", header);
    std::filesystem::resize_file(path, far);
    std::ofstream(path, std::ios::binary | std::ios::app)
        .write(reinterpret_cast<const char*>(toc.data()), static_cast<std::streamsize>(toc.size()));
    mopak archive;
    ASSERT_EQ(archive.open(path), 1);
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(archive.addfile("random"), 0); }),
              critical("The archive would pass 2 GiB!"));
    EXPECT_EQ(archive.addfile("data/text"), 1);
    ASSERT_EQ(archive.open(path), 1);
    EXPECT_EQ(data_of(archive, "data/text"), files[3].data);
}

TEST_F(mopak_files, opening_fails_as_it_should_and_leaves_the_object) {
    mopak archive;
    ASSERT_EQ(archive.create("empty.mop", "x"), 1);
    ASSERT_EQ(archive.create("a.mop", ""), 1);
    ASSERT_EQ(archive.addfile("tiny"), 1);
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(archive.open("empty.mop"), 0); }), critical("Unable to read TOC!"));
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(archive.open("missing.mop"), 0); }),
              critical("Unable to open archive!"));
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(archive.open("data"), 0); }), critical("Unable to open archive!"));
    EXPECT_EQ(archive.archive_path, "a.mop");
    EXPECT_EQ(archive.addfile("data/text"), 1);
    EXPECT_EQ(files_in(folder.read("a.mop")), (std::vector{files[0], files[3]}));
}

TEST_F(mopak_files, the_description) {
    mopak archive;
    archive.set_version(2, 11);
    ASSERT_EQ(archive.create("a.mop", "two of them"), 1);
    ASSERT_EQ(archive.addfile("tiny") + archive.addfile("data/zeros.bin"), 2);
    const pack_bytes bytes = folder.read("a.mop");
    const auto number = [&](std::size_t at) { return std::to_string(number_at(bytes, at)); };
    const std::string packed = std::to_string(zlib_packed(files[1].data).size());
    EXPECT_EQ(printed_by([&] { archive.debug(); }),
              "Mopak info:\nInfo: two of them\nVersion: 2.11\nFiles: 2\nTotal filesize: " + number(264) +
                  "\nOfs info: " + number(272) +
                  "\n\nFilename: tiny\nFilesize Raw: 1\nFilesize Compressed: 9\nOffset: 276\n"
                  "\nFilename: data/zeros.bin\nFilesize Raw: 70000\nFilesize Compressed: " +
                  packed + "\nOffset: 285\n");
}

TEST_F(mopak_files, every_method_leaves_its_trace) {
    const logged_levels traces(log_trace);
    const std::string encode = "[-] void *mopak::encode()\n[-] mopak::encode()\n";
    const std::string record = "[-] mopak_file::mopak_file()\n",
                      record_end = "[-] mopak_file::~mopak_file()\n";
    EXPECT_EQ(printed_by([] {
                  mopak archive;
                  archive.set_version(1, 2);
                  archive.create("a.mop", "");
                  archive.addfile("tiny");
                  archive.addfile("tiny");
              }),
              "[-] mopak_header::mopak_header()\n[-] void mopak::set_version()\n[-] int mopak::create()\n"
              "[-] int mopak::addfile()\n" +
                  encode + record + encode +
                  "[-] int mopak::addfile()\n"
                  "[-] mopak::~mopak()\n" +
                  record_end + "[-] mopak_header::~mopak_header()\n");
    EXPECT_EQ(printed_by([] {
                  mopak archive;
                  archive.open("a.mop");
                  archive.getdata("tiny");
                  archive.getdata(*archive.first);
              }),
              "[-] mopak_header::mopak_header()\n[-] int mopak::open()\n[-] void *mopak::decode()\n" +
                  record +
                  "[-] void *mopak::getdata(char)\n[-] mopak_file *mopak::find()\n"
                  "[-] void *mopak::getdata(mopak_file)\n[-] void *mopak::decode()\n"
                  "[-] void *mopak::getdata(mopak_file)\n[-] void *mopak::decode()\n"
                  "[-] mopak::~mopak()\n" +
                  record_end + "[-] mopak_header::~mopak_header()\n");
    captured_output quiet;
    mopak archive;
    EXPECT_EQ(printed_by([&] { archive.debug(); }).substr(0, 34), "[-] const void mopak::debug()\nMopa");
}

TEST(mopak_codec, packs_as_zlib_does_and_unpacks_what_it_expects) {
    for (const unsigned values : {1U, 2U, 30U, 256U})
        for (const std::size_t size : {0UL, 1UL, 2UL, 100UL, 65536UL, 1000003UL}) {
            const pack_bytes data = random_bytes(size, values, 5);
            std::size_t packed_size = 0;
            const mopak_bytes packed = mopak::encode(data.data(), data.size(), packed_size);
            ASSERT_NE(packed, nullptr);
            EXPECT_EQ(pack_bytes(packed.get(), packed.get() + packed_size), zlib_packed(data));
            for (const std::size_t expected : {std::size_t{0}, size, size + 1, std::size_t{1} << 31}) {
                std::size_t got = expected;
                const mopak_bytes unpacked = mopak::decode(packed.get(), got, packed_size);
                ASSERT_NE(unpacked, nullptr) << size << " " << expected;
                EXPECT_EQ(pack_bytes(unpacked.get(), unpacked.get() + got), data);
            }
            std::size_t too_small = size - 1;
            if (size > 1) {
                EXPECT_EQ(mopak::decode(packed.get(), too_small, packed_size), nullptr);
            }
        }
    // Without a size to expect there is room for 3 MiB and no more.
    for (const std::size_t size : {3145728UL, 3145729UL}) {
        const pack_bytes packed = zlib_packed(pack_bytes(size));
        std::size_t got = 0;
        EXPECT_EQ(mopak::decode(packed.data(), got, packed.size()) != nullptr, size == 3145728);
    }
}
