// The commands that tell what an archive holds.
#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "tools/mopak/commands.h"
#include "tools/mopak/packs.h"
#include "tools/mopak/report.h"

namespace {

struct sums {
    std::int64_t raw = 0;
    std::int64_t packed = 0;
};

sums sum_up(const mopak& archive) {
    sums all;
    for (const mopak_file* file = archive.first; file != nullptr; file = file->next) {
        all.raw += file->raw_size;
        all.packed += file->packed_size;
    }
    return all;
}

void print_row(std::int64_t raw, std::int64_t packed, const std::string& name) {
    std::printf("%10lld %10lld %7s  %s\n", static_cast<long long>(raw), static_cast<long long>(packed),
                percent(packed, raw).c_str(), name.c_str());
}

bool open_or_report(const pack_options& options, mopak& archive) {
    const std::string problem = open_pack(options.pack, archive);
    if (!problem.empty()) report(options.pack, problem);
    return problem.empty();
}

} // namespace

int pack_list(const pack_options& options) {
    mopak archive;
    if (!open_or_report(options, archive)) return 1;
    std::printf("%10s %10s %7s  %s\n", "bytes", "packed", "ratio", "name");
    for (const mopak_file* file = archive.first; file != nullptr; file = file->next)
        print_row(file->raw_size, file->packed_size, printable(file->name));
    const sums all = sum_up(archive);
    print_row(all.raw, all.packed, count_of(archive.header.file_count, "file"));
    return 0;
}

int pack_info(const pack_options& options) {
    mopak archive;
    if (!open_or_report(options, archive)) return 1;
    const mopak_header& header = archive.header;
    const sums all = sum_up(archive);
    std::printf("info      %s\n", printable(header.info).c_str());
    std::printf("version   %d.%d\n", header.version_major, header.version_minor);
    std::printf("files     %d\n", header.file_count);
    std::printf("size      %d bytes\n", header.total_size);
    std::printf("data      %lld bytes, unpacked %lld (%s)\n", static_cast<long long>(all.packed),
                static_cast<long long>(all.raw), percent(all.packed, all.raw).c_str());
    std::printf("contents  %d bytes at offset %d\n", header.total_size - header.toc_offset,
                header.toc_offset);
    std::error_code ignored;
    const auto length = static_cast<std::int64_t>(std::filesystem::file_size(options.pack, ignored));
    if (!ignored && length > header.total_size)
        std::printf("left over %lld bytes behind the end\n",
                    static_cast<long long>(length - header.total_size));
    return 0;
}
