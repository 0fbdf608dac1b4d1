// The commands that unpack what an archive holds.
#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tools/mopak/commands.h"
#include "tools/mopak/out_folder.h"
#include "tools/mopak/packs.h"
#include "tools/mopak/progress.h"
#include "tools/mopak/report.h"

namespace {

using wanted_files = std::vector<mopak_file*>;
using unpacked_use = std::function<std::string(const mopak_file& file, std::span<const std::uint8_t> bytes)>;

std::string with_slashes(std::string name) {
    std::ranges::replace(name, '\\', '/');
    return name;
}

// What was asked for, without '/' at the end, and whether any file is it or lies in a folder of that name.
using asked_names = std::unordered_map<std::string, bool>;

std::string asked_form(const std::string& word) {
    std::string name = with_slashes(word);
    name.erase(name.find_last_not_of('/') + 1);
    return name;
}

bool is_asked(const std::string& name, asked_names& asked) {
    bool wanted = false;
    std::size_t end = 0;
    do {
        end = name.find('/', end);
        const auto found = asked.find(name.substr(0, end));
        if (found != asked.end()) found->second = wanted = true;
    } while (end++ != name.npos);
    return wanted;
}

// The files that any of `names` asks for, all without names, in the archive's order. Reports names that ask
// for nothing and counts them in `unknown`.
wanted_files choose(const mopak& archive, std::span<const std::string> names, int& unknown) {
    asked_names asked;
    for (const std::string& name : names)
        asked.emplace(asked_form(name), false);
    wanted_files files;
    for (mopak_file* file = archive.first; file != nullptr; file = file->next)
        if (names.empty() || is_asked(with_slashes(file->name), asked)) files.push_back(file);
    for (const std::string& name : names)
        if (!asked[asked_form(name)]) {
            report(name, "isn't in the archive");
            ++unknown;
        }
    return files;
}

// The files by their places below a folder. The first of several that share a place has it.
using places = std::unordered_map<std::string, const mopak_file*>;

places places_of(const wanted_files& files) {
    places taken;
    for (const mopak_file* file : files)
        taken.emplace(place_of(file->name), file);
    return taken;
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
    const places taken = places_of(files);
    const int failed = unpack_all(archive, files, "extracting", [&](const mopak_file& file, auto bytes) {
        const std::string place = place_of(file.name);
        const mopak_file* owner = place.empty() ? &file : taken.at(place);
        if (owner == &file) return folder.write(file.name, bytes);
        if (std::string_view(owner->name) == file.name)
            return std::string("is in the archive twice, and the first of that name counts");
        return std::string("is refused, for ").append(owner->name) + " has its place " + place;
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
