// Archives: opened, described, searched, unpacked and added to. The first byte of the input says what the
// rest is. 0: an archive. Else the table of contents in it is not packed yet, so that its records can be
// changed: a header, a byte that counts the records, the records, the data blocks; an odd first byte lets the
// header's numbers fit.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <span>
#include <vector>

#include "morvane/mopak/mopak.h"
#include "tests/support/memory_disk_file.h"
#include "tests/support/pack_files.h"

namespace {

pack_bytes archive_from(std::span<const std::uint8_t> input) {
    const std::uint8_t form = input[0];
    input = input.subspan(1);
    if (form == 0 || input.size() < 277) return {input.begin(), input.end()};
    pack_bytes all(input.begin(), input.begin() + 276);
    const std::size_t count = std::min<std::size_t>(input[276], (input.size() - 277) / 268);
    const auto records = input.subspan(277, count * 268);
    const auto blocks = input.subspan(277 + count * 268);
    all.insert(all.end(), blocks.begin(), blocks.end());
    const pack_bytes toc = zlib_packed({records.begin(), records.end()});
    if (form % 2 == 1) {
        put_number(all, 264, static_cast<std::int32_t>(all.size() + toc.size()));
        put_number(all, 268, static_cast<std::int32_t>(count));
        put_number(all, 272, static_cast<std::int32_t>(all.size()));
    }
    all.insert(all.end(), toc.begin(), toc.end());
    return all;
}

// What each name gives, for names that give something.
std::map<std::string, pack_bytes> contents(mopak& archive, std::size_t archive_size) {
    std::map<std::string, pack_bytes> all;
    std::int32_t count = 0;
    for (mopak_file* file = archive.first; file != nullptr; file = file->next, ++count) {
        if (std::memchr(file->name, 0, sizeof file->name) == nullptr) std::abort();
        mopak_file* found = archive.find(file->name);
        if (found == nullptr) std::abort();
        const mopak_bytes data = archive.getdata(*found);
        if (data == nullptr) continue;
        const auto size = static_cast<std::size_t>(found->raw_size);
        if (size > 1032 * archive_size) std::abort();
        all[found->name].assign(data.get(), data.get() + size);
    }
    if (count != archive.header.file_count) std::abort();
    return all;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    static const memory_disk_file file;
    const pack_bytes bytes = archive_from({data, size});
    file.write(bytes);

    mopak archive;
    if (archive.open(file.path()) != 1) {
        if (archive.first != nullptr || archive.header.toc_offset != 276) std::abort();
        return 0;
    }
    archive.debug();
    const auto before = contents(archive, bytes.size());

    // Whatever it is, a file added to it costs none that was there.
    static const memory_disk_file added;
    added.write(text_bytes("added"));
    if (archive.find(added.path()) != nullptr || archive.addfile(added.path()) != 1) return 0;
    mopak again;
    if (again.open(file.path()) != 1) std::abort();
    const auto after = contents(again, bytes.size() + 10000);
    for (const auto& [name, content] : before)
        if (!after.contains(name) || after.at(name) != content) std::abort();
    if (!after.contains(added.path())) std::abort();
    return 0;
}
