#include "morvane/mopak/writer.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <new>
#include <utility>

#include "morvane/base/log.h"

namespace {

// What zlib can make of a table of `count` records at most, with ample room.
std::int64_t most_toc_size(std::int64_t count) {
    const std::int64_t raw = count * static_cast<std::int64_t>(mopak_record_size);
    return raw + raw / 1000 + 64;
}

} // namespace

// What a failed write left in the list goes, and the next block takes the place of the first such one.
mopak_addition::mopak_addition(mopak& bound_archive)
    : archive(bound_archive), end(archive.header.toc_offset) {
    if (archive.unwritten != nullptr) end = archive.unwritten->offset;
    archive.drop_from(std::exchange(archive.unwritten, nullptr));
    for (const mopak_file* file = archive.first; file != nullptr; file = file->next) {
        ++count;
        if (std::int64_t{file->offset} + file->packed_size > end) overlapped = true;
    }
    archive.header.toc_offset = end;
    archive.header.file_count = count;
}

const char* mopak_addition::add(const std::string& path, const std::string& name) {
    errno = 0;
    if (archive.look_up(name) != nullptr) return nullptr;
    if (overlapped) return "The archive is damaged, files in it would be overwritten!";
    if (!mopak_text_fits(name, mopak_name_room)) return "The name is too long for an archive!";

    mopak_bytes raw;
    std::size_t raw_size = 0;
    switch (read_whole_file(path, raw, raw_size)) {
    case read_result::not_opened:
        return "Unable to open file to be added!";
    case read_result::too_large:
        return "The file is too large for an archive!";
    case read_result::no_memory:
        return "Unable to create raw buffer!";
    case read_result::not_read:
        return "Reading file data failed!";
    case read_result::done:
        break;
    }

    std::size_t packed_size = 0;
    mopak_bytes block = mopak::encode(raw.get(), raw_size, packed_size);
    if (block == nullptr) return "Unable to encode data!";
    raw.reset();
    if (static_cast<std::int64_t>(packed_size) + end + most_toc_size(count + 1) > INT32_MAX)
        return "The archive would pass 2 GiB!";

    std::unique_ptr<mopak_file> file(new (std::nothrow) mopak_file);
    if (file == nullptr) return "Could not create mopak_file!";
    mopak_text_copy(name, file->name);
    file->raw_size = static_cast<std::int32_t>(raw_size);
    file->packed_size = static_cast<std::int32_t>(packed_size);
    file->offset = end;
    if (const char* problem = make_room()) return problem;
    return append(std::move(file), std::move(block));
}

// Room in the table for one record more. It is filled at the end, so growing copies nothing.
const char* mopak_addition::make_room() {
    const std::size_t records = static_cast<std::size_t>(count) + 1;
    if (records > mopak_most_files) return "The archive holds as many files as can be opened again!";
    if (records <= toc_room) return nullptr;
    const std::size_t room = out ? std::min(2 * records, mopak_most_files) : records;
    mopak_bytes larger(new (std::nothrow) std::uint8_t[room * mopak_record_size]);
    if (larger == nullptr) return "Could not create mopak_file_single!";
    toc = std::move(larger);
    toc_room = room;
    return nullptr;
}

const char* mopak_addition::append(std::unique_ptr<mopak_file> file, mopak_bytes block) {
    if (!out) {
        out.emplace(archive.archive_path, "r+b");
        if (!out->is_open() || !out->seek(end)) {
            out.reset();
            return "Unable to open archive to be extended!";
        }
    }
    const auto size = static_cast<std::size_t>(file->packed_size);
    if (!archive.link(std::move(file))) return "Could not create mopak_file!";
    if (archive.unwritten == nullptr) archive.unwritten = archive.last;
    if (!out->write({block.get(), size})) return break_off("Writing compressed file to archive failed!");
    end += archive.last->packed_size;
    ++count;
    return nullptr;
}

const char* mopak_addition::finish() {
    if (damaged || !out) return nullptr;
    const std::span table(toc.get(), static_cast<std::size_t>(count) * mopak_record_size);
    std::span<std::uint8_t> rest = table;
    for (const mopak_file* file = archive.first; file != nullptr; file = file->next) {
        record_to_bytes(*file, rest.first<mopak_record_size>());
        rest = rest.subspan(mopak_record_size);
    }
    archive.header.file_count = count;
    std::size_t toc_size = 0;
    const mopak_bytes packed_toc = mopak::encode(table.data(), table.size(), toc_size);
    if (packed_toc == nullptr) return break_off("Unable to encode TOC!");
    if (!out->write({packed_toc.get(), toc_size})) return break_off("Writing new TOC to archive failed!");
    archive.header.total_size = end + static_cast<std::int32_t>(toc_size);
    archive.header.toc_offset = end;

    const auto header = header_to_bytes(archive.header);
    if (!out->seek(0) || !out->write(header) || !out->close())
        return break_off("Writing new header to archive failed!");
    out.reset();
    archive.unwritten = nullptr;
    return nullptr;
}

const char* mopak_addition::break_off(const char* problem) {
    const int reason = errno;
    damaged = true;
    out.reset();
    errno = reason;
    return problem;
}

const char* mopak::write_new(const std::string& path, const std::string& info) {
    errno = 0;
    if (!mopak_text_fits(info, mopak_info_room)) return "The info text is too long!";
    disk_file file(path, "wb");
    if (!file.is_open()) return "Unable to create file!";

    const auto former = header_to_bytes(header);
    mopak_text_copy(info, header.info);
    header.total_size = mopak_header_size;
    header.file_count = 0;
    header.toc_offset = mopak_header_size;
    if (!file.write(header_to_bytes(header)) || !file.close()) {
        header_from_bytes(former, header);
        return "Could not write header!";
    }
    drop_from(first);
    unwritten = nullptr;
    archive_path = path;
    return nullptr;
}

int mopak::create(const std::string& path, const std::string& info) {
    log_message("int mopak::create()", log_trace, 0);
    const char* problem = write_new(path, info);
    return problem == nullptr ? 1 : log_message(problem, log_error, 1);
}

int mopak::addfile(const std::string& name) {
    log_message("int mopak::addfile()", log_trace, 0);
    mopak_addition addition(*this);
    const char* problem = addition.add(name, name);
    if (problem == nullptr) problem = addition.finish();
    return problem == nullptr ? 1 : log_message(problem, log_error, 1);
}

int mopak::addfiles(std::span<const std::string> names) {
    log_message("int mopak::addfiles()", log_trace, 0);
    int result = 1;
    mopak_addition addition(*this);
    for (const std::string& name : names) {
        if (const char* problem = addition.add(name, name)) result = log_message(problem, log_error, 1);
        if (addition.broken()) return result;
    }
    const char* problem = addition.finish();
    return problem == nullptr ? result : log_message(problem, log_error, 1);
}
