// The commands that unpack what an archive holds.
#include <algorithm>
#include <cstdio>
#include <functional>

#include "tools/mopak/commands.h"
#include "tools/mopak/out_folder.h"
#include "tools/mopak/packs.h"
#include "tools/mopak/progress.h"
#include "tools/mopak/report.h"

namespace {

using wanted_files = std::vector<mopak_file*>;
using unpacked_use = std::function<std::string(const mopak_file& file, std::span<const std::uint8_t> bytes)>;

// Whether `name` is `wanted`, or lies in a folder of that name.
bool matches(std::string_view name, std::string_view wanted) {
    while (wanted.ends_with('/'))
        wanted.remove_suffix(1);
    return name.starts_with(wanted) && (name.size() == wanted.size() || name[wanted.size()] == '/');
}

// The files that any of `names` asks for, all without names, in the archive's order. Reports names that ask
// for nothing and counts them in `unknown`.
wanted_files choose(const mopak& archive, std::span<const std::string> names, int& unknown) {
    wanted_files files;
    std::vector<bool> asked(names.size());
    for (mopak_file* file = archive.first; file != nullptr; file = file->next) {
        bool wanted = names.empty();
        for (std::size_t i = 0; i < names.size(); ++i)
            if (matches(file->name, names[i])) asked[i] = wanted = true;
        if (wanted) files.push_back(file);
    }
    for (std::size_t i = 0; i < names.size(); ++i)
        if (!asked[i]) {
            report(names[i], "isn't in the archive");
            ++unknown;
        }
    return files;
}

// Unpacks a file and hands it on. Returns what went wrong, or nothing.
std::string unpack(mopak& archive, mopak_file& file, const unpacked_use& use) {
    const std::int32_t size = file.raw_size;
    const bool placed = file.offset >= static_cast<std::int32_t>(mopak_header_size) &&
                        std::int64_t{file.offset} + file.packed_size <= archive.header.toc_offset;
    if (!placed) return "its record is damaged";
    const mopak_bytes data = archive.getdata(file);
    if (data == nullptr) return "can't be unpacked, its data are damaged";
    if (file.raw_size != size)
        return "unpacks to " + count_of(file.raw_size, "byte") + ", and not to " + std::to_string(size);
    return use(file, {data.get(), static_cast<std::size_t>(size)});
}

// Unpacks all of `files`. Reports each that fails; returns how many those were.
int unpack_all(mopak& archive, const wanted_files& files, const char* verb, const unpacked_use& use) {
    std::int64_t total = 0, done = 0;
    for (const mopak_file* file : files)
        total += std::max(file->raw_size, 0);
    progress shown(verb, total);
    int failed = 0;
    for (mopak_file* file : files) {
        shown.at(done, file->name);
        done += std::max(file->raw_size, 0);
        const std::string problem = unpack(archive, *file, use);
        if (problem.empty()) continue;
        shown.clear();
        report(file->name, problem);
        ++failed;
    }
    return failed;
}

int sum_up(const pack_options& options, std::size_t count, int failed, const char* fine) {
    const auto all = static_cast<std::int64_t>(count);
    std::printf("%s: ", printable(options.pack).c_str());
    if (failed == 0)
        std::printf("%s %s\n", count_of(all, "file").c_str(), fine);
    else
        std::printf("%lld of %s %s, %d failed\n", static_cast<long long>(all - failed),
                    count_of(all, "file").c_str(), fine, failed);
    return failed == 0 ? 0 : 1;
}

} // namespace

int pack_extract(const pack_options& options) {
    mopak archive;
    const std::string problem = open_pack(options.pack, archive);
    if (!problem.empty()) {
        report(options.pack, problem);
        return 1;
    }
    out_folder folder(options.folder);
    if (!folder.problem.empty()) {
        report(options.folder, folder.problem);
        return 1;
    }
    int unknown = 0;
    const wanted_files files = choose(archive, options.names, unknown);
    const int failed = unpack_all(archive, files, "extracting", [&](const mopak_file& file, auto bytes) {
        if (archive.look_up(file.name) != &file)
            return std::string("is in the archive twice, and the first of that name counts");
        return folder.write(file.name, bytes);
    });
    const int code = sum_up(options, files.size(), failed, "extracted");
    return unknown > 0 ? 1 : code;
}

int pack_test(const pack_options& options) {
    mopak archive;
    const std::string problem = open_pack(options.pack, archive);
    if (!problem.empty()) {
        report(options.pack, problem);
        return 1;
    }
    int unknown = 0;
    const wanted_files files = choose(archive, {}, unknown);
    const int failed = unpack_all(archive, files, "testing", [](auto&&...) { return std::string(); });
    return sum_up(options, files.size(), failed, "whole");
}
