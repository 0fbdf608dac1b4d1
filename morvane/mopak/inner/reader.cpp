// Opens archives and hands out what they hold.
#include <cerrno>
#include <new>

#include "morvane/base/log.h"
#include "morvane/mopak/disk_file.h"
#include "morvane/mopak/mopak.h"

namespace {

constexpr char no_memory_for_toc[] = "Not enough memory for TOC!";

// Reads and unpacks the table of contents; null, or what failed. It must lie between the header and the end
// of the file and hold the records that the header counts, no fewer and no more: what the header doesn't know
// of would be lost with the next addition.
const char* read_toc(disk_file& file, const mopak_header& header, mopak_bytes& toc, std::size_t& toc_size) {
    const std::int64_t begin = header.toc_offset;
    const std::int64_t end = header.total_size;
    if (end < begin) return no_memory_for_toc;
    const bool within = begin >= static_cast<std::int64_t>(mopak_header_size) && end <= file.size();
    if (!within) return "Unable to read TOC!";

    const auto packed_size = static_cast<std::size_t>(end - begin);
    const mopak_bytes packed(new (std::nothrow) std::uint8_t[packed_size]);
    if (packed == nullptr) return no_memory_for_toc;
    if (!file.seek(begin) || !file.read({packed.get(), packed_size})) return "Unable to read TOC!";

    toc_size = 0;
    toc = mopak::decode(packed.get(), toc_size, packed_size);
    const std::int64_t counted = header.file_count * static_cast<std::int64_t>(mopak_record_size);
    const bool as_counted = counted == static_cast<std::int64_t>(toc_size);
    return toc != nullptr && as_counted ? nullptr : "Unable to decode TOC!";
}

// The packed data of `file`, which must lie within the archive. Null with an error in the log.
mopak_bytes read_block(const std::string& archive_path, const mopak_file& file) {
    const auto fail = [](const char* problem) {
        log_message(problem, log_error, 0);
        return mopak_bytes();
    };
    if (file.packed_size < 0) return fail("Unable to create buffer for compressed data!");
    disk_file archive(archive_path, "rb");
    if (!archive.is_open()) return fail("Unable to open archive!");

    const char* const unreadable = "Unable to read compressed data from archive!";
    if (file.offset < 0 || std::int64_t{file.offset} + file.packed_size > archive.size())
        return fail(unreadable);
    const auto size = static_cast<std::size_t>(file.packed_size);
    mopak_bytes packed(new (std::nothrow) std::uint8_t[size]);
    if (packed == nullptr) return fail("Unable to create buffer for compressed data!");
    if (!archive.seek(file.offset) || !archive.read({packed.get(), size})) return fail(unreadable);
    return packed;
}

// A plain file on disk in place of one in the archive.
mopak_bytes read_loose_file(const std::string& name, std::size_t& size) {
    mopak_bytes data;
    const read_result result = read_whole_file(name, data, size);
    if (result == read_result::done) return data;
    if (result == read_result::not_opened)
        log_message("Could not find a file containing data.", log_warning, 0);
    else
        log_message("Reading external file failed.", log_error, 1);
    return nullptr;
}

} // namespace

const char* mopak::load(const std::string& path) {
    errno = 0;
    disk_file file(path, "rb");
    if (!file.is_open()) return "Unable to open archive!";

    const auto former = header_to_bytes(header);
    std::array<std::uint8_t, mopak_header_size> bytes = {};
    file.read(bytes); // of a file that is too short nothing counts
    bool texts_end = header_from_bytes(bytes, header);
    mopak_bytes toc;
    std::size_t toc_size = 0;
    if (const char* problem = read_toc(file, header, toc, toc_size)) {
        header_from_bytes(former, header);
        return problem;
    }

    drop_from(first);
    unwritten = nullptr;
    archive_path.clear(); // with half a list nothing may be written
    std::span<const std::uint8_t> rest(toc.get(), toc_size);
    for (std::int32_t i = 0; i < header.file_count; ++i) {
        std::unique_ptr<mopak_file> node(new (std::nothrow) mopak_file);
        if (node == nullptr) return "Unable to create mopak_file!";
        texts_end = record_from_bytes(rest.first<mopak_record_size>(), *node) && texts_end;
        if (!link(std::move(node))) return "Unable to create mopak_file!";
        rest = rest.subspan(mopak_record_size);
    }
    archive_path = path;
    if (!texts_end) log_message("A text in the archive has no end and was cut.", log_warning, 0);
    return nullptr;
}

int mopak::open(const std::string& path) {
    log_message("int mopak::open()", log_trace, 0);
    const char* problem = load(path);
    if (problem == nullptr) return 1;
    const int result = log_message(problem, log_error, 1);
    return problem == no_memory_for_toc ? -1 : result;
}

mopak_bytes mopak::getdata(mopak_file& file) {
    log_message("void *mopak::getdata(mopak_file)", log_trace, 0);
    const mopak_bytes packed = read_block(archive_path, file);
    if (packed == nullptr) return nullptr;

    mopak_bytes data;
    auto size = static_cast<std::size_t>(file.raw_size);
    if (file.raw_size >= 0) data = decode(packed.get(), size, static_cast<std::size_t>(file.packed_size));
    if (data == nullptr)
        log_message("Unable to decode data!", log_error, 0);
    else
        file.raw_size = static_cast<std::int32_t>(size);
    return data;
}

mopak_bytes mopak::getdata(const std::string& name, std::size_t& size) {
    log_message("void *mopak::getdata(char)", log_trace, 0);
    size = 0;
    mopak_file* file = find(name);
    if (file == nullptr) return read_loose_file(name, size);
    mopak_bytes data = getdata(*file);
    if (data == nullptr)
        log_message("Unable to retrieve data!", log_error, 1);
    else
        size = static_cast<std::size_t>(file->raw_size);
    return data;
}

mopak_bytes mopak::getdata(const std::string& name) {
    std::size_t size = 0;
    return getdata(name, size);
}
