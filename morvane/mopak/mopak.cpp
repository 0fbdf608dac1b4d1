#include "morvane/mopak/mopak.h"

#include <cstdio>
#include <new>
#include <utility>

#include "morvane/base/log.h"

mopak::mopak() {
    header.total_size = mopak_header_size;
    header.toc_offset = mopak_header_size;
}

mopak::~mopak() {
    log_message("mopak::~mopak()", log_trace, 0);
    drop_from(first);
}

void mopak::set_version(std::int32_t major, std::int32_t minor) {
    log_message("void mopak::set_version()", log_trace, 0);
    header.version_major = major;
    header.version_minor = minor;
}

mopak_file* mopak::look_up(const std::string& name) const {
    const auto found = by_name.find(name);
    return found == by_name.end() ? nullptr : found->second;
}

mopak_file* mopak::find(const std::string& name) {
    log_message("mopak_file *mopak::find()", log_trace, 0);
    return look_up(name);
}

bool mopak::link(std::unique_ptr<mopak_file> file) {
    try {
        by_name.try_emplace(file->name, file.get());
    } catch (const std::bad_alloc&) {
        return false;
    }
    mopak_file* added = file.release();
    (last == nullptr ? first : last->next) = added;
    last = added;
    return true;
}

void mopak::drop_from(mopak_file* file) {
    if (file == nullptr) return;
    mopak_file* before = nullptr;
    for (mopak_file* each = first; each != file; each = each->next)
        before = each;
    (before == nullptr ? first : before->next) = nullptr;
    last = before;
    while (file != nullptr) {
        if (look_up(file->name) == file) by_name.erase(file->name);
        delete std::exchange(file, file->next);
    }
}

void mopak::debug() {
    log_message("const void mopak::debug()", log_trace, 0);
    std::printf("Mopak info:\n");
    std::printf("Info: %s\n", header.info);
    std::printf("Version: %i.%i\n", header.version_major, header.version_minor);
    std::printf("Files: %i\n", header.file_count);
    std::printf("Total filesize: %i\n", header.total_size);
    std::printf("Ofs info: %i\n", header.toc_offset);
    for (const mopak_file* file = first; file != nullptr; file = file->next) {
        std::printf("\nFilename: %s\n", file->name);
        std::printf("Filesize Raw: %i\n", file->raw_size);
        std::printf("Filesize Compressed: %i\n", file->packed_size);
        std::printf("Offset: %i\n", file->offset);
    }
}
