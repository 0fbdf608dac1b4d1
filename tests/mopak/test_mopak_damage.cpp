// Archives that are damaged or made to do harm.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

#include "morvane/base/log.h"
#include "morvane/mopak/mopak.h"
#include "tests/support/captured_output.h"
#include "tests/support/failing_calls.h"
#include "tests/support/memory_disk_file.h"
#include "tests/support/pack_files.h"

namespace {

// The checksum of zlib can miss a change in data of few different bytes; these have many.
const std::vector<packed_file> good_files = {{"first", random_bytes(90, 40, 1)},
                                             {"folder/second", random_bytes(300, 100, 2)},
                                             {"third", text_bytes("third third third third")}};

struct logged_errors {
    logged_errors() { log_channel = {.enabled = true, .level_mask = log_error, .to_stdout = true}; }
    ~logged_errors() { log_channel = {}; }
};

// What a method does with an archive of these bytes.
class damaged_archive {
  public:
    explicit damaged_archive(const pack_bytes& bytes) {
        const logged_errors errors;
        file.write(bytes);
        captured_output printed;
        result = archive.open(file.path());
        said = printed.out();
    }

    // The data, or none, and what was printed.
    bool get(const std::string& name) {
        const logged_errors errors;
        captured_output printed;
        std::size_t size = 0;
        const mopak_bytes bytes = archive.getdata(name, size);
        said = printed.out();
        data.assign(bytes.get(), bytes.get() + size);
        return bytes != nullptr;
    }

    mopak archive;
    int result = 0;
    std::string said;
    pack_bytes data;

  private:
    memory_disk_file file;
};

std::string errors(std::initializer_list<const char*> messages) {
    std::string all;
    for (const char* message : messages)
        all += std::string("[ERROR] ") + message + "\n";
    return all;
}

// Uses all of an archive; nothing but the limits of memory can be told about what comes out.
void use_all(mopak& archive, std::size_t archive_size) {
    archive.debug();
    largest_array_asked();
    for (mopak_file* file = archive.first; file != nullptr; file = file->next) {
        const mopak_bytes data = archive.getdata(*file);
        if (data == nullptr) continue;
        volatile std::uint8_t byte = 0; // every byte is there
        for (std::int32_t i = 0; i < file->raw_size; ++i)
            byte = data[static_cast<std::size_t>(i)];
        static_cast<void>(byte);
    }
    EXPECT_LE(largest_array_asked(), 1032 * archive_size);
}

} // namespace

TEST(mopak_damage, one_changed_bit_anywhere) {
    const pack_bytes whole = archive_of(good_files, "info");
    const memory_disk_file file;
    const laid_files laid = lay_out(good_files);
    const auto toc_offset = static_cast<std::size_t>(number_at(whole, 272));
    captured_output quiet;
    for (std::size_t at = 0; at < whole.size(); ++at)
        for (int bit = 0; bit < 8; ++bit) {
            pack_bytes bytes = whole;
            bytes[at] = static_cast<std::uint8_t>(bytes[at] ^ 1U << bit);
            file.write(bytes);
            mopak archive;
            const int result = archive.open(file.path());
            use_all(archive, bytes.size());
            ASSERT_EQ(result == 1, archive.first != nullptr);
            const bool counts = (at >= 264 && at < 276) || at >= toc_offset; // the three numbers, the table
            ASSERT_TRUE(counts || result == 1) << at;
            ASSERT_TRUE(result != 1 || at < 264 || at >= 276) << at;
            // A file is what it was, unless its own block is hit: then it is that or nothing.
            for (std::size_t i = 0; i < good_files.size() && at < toc_offset && result == 1; ++i) {
                const auto begin = static_cast<std::size_t>(laid.records[i].offset);
                const bool hit =
                    at >= begin && at < begin + static_cast<std::size_t>(laid.records[i].packed_size);
                mopak_file* found = archive.find(good_files[i].name);
                ASSERT_NE(found, nullptr) << at;
                const mopak_bytes data = archive.getdata(*found);
                ASSERT_TRUE(data != nullptr || hit) << at;
                if (data == nullptr) continue;
                ASSERT_TRUE(std::equal(good_files[i].data.begin(), good_files[i].data.end(), data.get()))
                    << at;
            }
        }
}

TEST(mopak_damage, cut_anywhere) {
    const pack_bytes whole = archive_of(good_files, "info");
    captured_output quiet;
    const memory_disk_file file;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        file.write(std::span(whole).first(size));
        mopak archive;
        ASSERT_EQ(archive.open(file.path()), 0) << size;
        ASSERT_EQ(archive.first, nullptr);
        ASSERT_EQ(archive.addfile(file.path()), 0);
    }
}

TEST(mopak_damage, a_header_that_lies) {
    const pack_bytes whole = archive_of(good_files, "info");
    const auto size = static_cast<std::int32_t>(whole.size());
    const std::int32_t toc_offset = number_at(whole, 272);
    const std::string unread = critical("Unable to read TOC!");
    struct lie {
        std::int32_t total_size, file_count, toc_offset;
        int result;
        std::string said;
    };
    for (const auto& [total, count, offset, result, said] :
         {lie{size + 1, 3, toc_offset, 0, unread},
          {INT32_MAX, 3, toc_offset, 0, unread},
          {size, 3, 275, 0, unread},
          {INT32_MAX, 3, INT32_MIN, 0, unread},
          {size, 3, size, 0, unread},
          {toc_offset - 1, 3, toc_offset, -1, critical("Not enough memory for TOC!")},
          {INT32_MIN, 3, INT32_MAX, -1, critical("Not enough memory for TOC!")},
          {size - 1, 3, toc_offset, 0, critical("Unable to decode TOC!")},
          {size, 3, toc_offset + 1, 0, critical("Unable to decode TOC!")},
          {size, 4, toc_offset, 0, critical("Unable to decode TOC!")},
          {size, INT32_MAX, toc_offset, 0, critical("Unable to decode TOC!")},
          {size, -1, toc_offset, 0, critical("Unable to decode TOC!")},
          {size, 2, toc_offset, 0, critical("Unable to decode TOC!")},
          {size, 0, toc_offset, 0, critical("Unable to decode TOC!")},
          {size, 3, toc_offset, 1, ""}}) {
        pack_bytes bytes = whole;
        put_number(bytes, 264, total);
        put_number(bytes, 268, count);
        put_number(bytes, 272, offset);
        largest_array_asked();
        const damaged_archive damaged(bytes);
        EXPECT_EQ(damaged.result, result) << total << " " << count << " " << offset;
        EXPECT_TRUE(damaged.said.ends_with(said) && damaged.said.empty() == said.empty()) << damaged.said;
        EXPECT_EQ(damaged.archive.first != nullptr, result == 1);
        EXPECT_LE(largest_array_asked(), 1032 * whole.size());
    }
}

TEST(mopak_damage, a_record_that_lies) {
    const laid_files laid = lay_out(good_files);
    const auto end = static_cast<std::int32_t>(276 + laid.blocks.size());
    const std::string lost = critical("Unable to retrieve data!");
    const std::string unread =
        errors({"Unable to read compressed data from archive!", "Unable to retrieve data!"}) + lost;
    const std::string unpacked = errors({"Unable to decode data!", "Unable to retrieve data!"}) + lost;
    const std::string no_room = errors({"zlib returned Z_BUF_ERROR in encode!", "Unable to decode data!",
                                        "Unable to retrieve data!"}) +
                                lost;
    const std::string no_buffer =
        errors({"Unable to create buffer for compressed data!", "Unable to retrieve data!"}) + lost;
    const pack_record true_one = laid.records[1];
    struct lie {
        std::int32_t raw_size, packed_size, offset;
        std::string said; // empty if the data come out all the same
    };
    for (const auto& [raw, packed, offset, said] :
         {lie{true_one.raw_size - 1, true_one.packed_size, true_one.offset, no_room},
          {true_one.raw_size + 1, true_one.packed_size, true_one.offset, ""},
          {0, true_one.packed_size, true_one.offset, ""},
          {INT32_MIN, true_one.packed_size, true_one.offset, unpacked},
          {true_one.raw_size, true_one.packed_size - 1, true_one.offset, no_room},
          {true_one.raw_size, true_one.packed_size + 1, true_one.offset, ""},
          {true_one.raw_size, 0, true_one.offset, unread},
          {true_one.raw_size, INT32_MIN, true_one.offset, no_buffer},
          {true_one.raw_size, INT32_MAX, INT32_MAX, unread},
          {true_one.raw_size, true_one.packed_size, INT32_MIN, unread},
          {true_one.raw_size, true_one.packed_size, true_one.offset + 1, unpacked},
          {true_one.raw_size, true_one.packed_size, 0, unpacked}, // the header
          {true_one.raw_size, 60, end, no_room},                  // the table, which is longer
          {true_one.raw_size, true_one.packed_size, end, unread}}) {
        std::vector<pack_record> records = laid.records;
        records[1] = {true_one.name, raw, packed, offset};
        const pack_bytes bytes = archive_of(laid.blocks, records);
        damaged_archive damaged(bytes);
        ASSERT_EQ(damaged.result, 1);
        largest_array_asked();
        EXPECT_EQ(damaged.get(true_one.name), said.empty()) << raw << " " << packed << " " << offset;
        EXPECT_EQ(damaged.said, said) << raw << " " << packed << " " << offset;
        EXPECT_LE(largest_array_asked(), 1032 * bytes.size());
        if (said.empty()) {
            EXPECT_EQ(damaged.data, good_files[1].data);
            EXPECT_EQ(damaged.archive.find(true_one.name)->raw_size, true_one.raw_size);
        }
        EXPECT_TRUE(damaged.get("third")); // the others are whole
        EXPECT_EQ(damaged.data, good_files[2].data);
    }
}

TEST(mopak_damage, files_may_share_a_block_but_not_be_overwritten) {
    laid_files laid = lay_out(good_files);
    laid.records[2] = laid.records[1];
    laid.records[2].name = "third";
    damaged_archive shared(archive_of(laid.blocks, laid.records));
    EXPECT_TRUE(shared.get("third"));
    EXPECT_EQ(shared.data, good_files[1].data);
    EXPECT_EQ(shared.archive.addfile("/proc/self/exe"), 1);

    laid.records[2].packed_size = laid.records[2].offset = 400; // into the table
    damaged_archive beyond(archive_of(laid.blocks, laid.records));
    ASSERT_EQ(beyond.result, 1);
    captured_output printed;
    EXPECT_EQ(beyond.archive.addfile("/proc/self/exe"), 0);
    EXPECT_EQ(printed.out(), critical("The archive is damaged, files in it would be overwritten!"));
}

TEST(mopak_damage, texts_without_an_end_are_cut) {
    laid_files laid = lay_out(good_files);
    laid.records[1].name = std::string(300, 'n');
    damaged_archive damaged(archive_of(laid.blocks, laid.records, std::string(255, 'i')));
    ASSERT_EQ(damaged.result, 1);
    EXPECT_EQ(damaged.archive.header.info, std::string(254, 'i'));
    EXPECT_EQ(damaged.archive.first->next->name, std::string(255, 'n'));
    EXPECT_TRUE(damaged.get(std::string(255, 'n')));
    EXPECT_EQ(damaged.data, good_files[1].data);
    captured_output printed;
    damaged.archive.debug();
    EXPECT_NE(printed.out().find("Info: " + std::string(254, 'i') + "\n"), std::string::npos);
}

TEST(mopak_damage, names_without_sense) {
    // Two of a name: the first counts. No name, or one that a terminal would obey: names like others.
    std::vector<packed_file> files = good_files;
    files[0].name = files[1].name = "same";
    files[2].name = "";
    files.push_back({"\x1b[2J\n", text_bytes("escape")});
    damaged_archive damaged(archive_of(files));
    ASSERT_EQ(damaged.result, 1);
    EXPECT_TRUE(damaged.get("same"));
    EXPECT_EQ(damaged.data, files[0].data);
    EXPECT_TRUE(damaged.get(""));
    EXPECT_EQ(damaged.data, files[2].data);
    EXPECT_TRUE(damaged.get("\x1b[2J\n"));
}
