#include "tools/mopak/packs.h"

#include <cerrno>

#include "morvane/mopak/disk_file.h"
#include "tools/mopak/report.h"

namespace {

// A header that promises nothing.
bool load_without_files(const std::string& path, mopak& archive) {
    disk_file file(path, "rb");
    std::array<std::uint8_t, mopak_header_size> bytes = {};
    if (!file.is_open() || !file.read(bytes)) return false;
    mopak_header header;
    header_from_bytes(bytes, header);
    constexpr auto end = static_cast<std::int32_t>(mopak_header_size);
    if (header.file_count != 0 || header.total_size != end || header.toc_offset != end) return false;
    header_from_bytes(bytes, archive.header);
    archive.archive_path = path;
    return true;
}

} // namespace

std::string open_pack(const std::string& path, mopak& archive) {
    const char* problem = archive.load(path);
    if (problem == nullptr) return {};
    if (errno != 0) return in_words(problem);
    if (load_without_files(path, archive)) return {};
    return "is no archive, or a damaged one";
}
