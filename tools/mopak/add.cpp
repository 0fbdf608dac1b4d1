// The commands that make an archive or make it longer.
#include <algorithm>
#include <filesystem>

#include "morvane/mopak/writer.h"
#include "tools/mopak/commands.h"
#include "tools/mopak/pack_copy.h"
#include "tools/mopak/packs.h"
#include "tools/mopak/progress.h"
#include "tools/mopak/report.h"
#include "tools/mopak/sources.h"

namespace fs = std::filesystem;

namespace {

// Adds what isn't there yet. Returns what went wrong, with the file concerned, or nothing.
std::string add_all(mopak& archive, const source_list& list, const std::string& pack) {
    progress shown("packing", list.total());
    std::int64_t done = 0;
    mopak_addition addition(archive);
    for (const pack_source& source : list.sources) {
        shown.at(done, source.name);
        done += source.size;
        if (archive.look_up(source.name) != nullptr) {
            shown.clear();
            report(source.name, "is in the archive already and stays as it is there");
            continue;
        }
        const char* problem = addition.add(source.path, source.name);
        if (problem != nullptr) return (addition.broken() ? pack : source.path) + ": " + in_words(problem);
    }
    const char* problem = addition.finish();
    return problem == nullptr ? "" : pack + ": " + in_words(problem);
}

// From the copy that `archive` is bound to, with `list` added, to the archive in its place.
int complete(mopak& archive, pack_copy& copy, const source_list& list, const std::string& pack) {
    const std::int32_t count = archive.header.file_count;
    std::string problem = add_all(archive, list, pack);
    if (problem.empty()) {
        problem = copy.put_in_place(archive.header.total_size);
        if (!problem.empty()) problem = pack + ": " + problem;
    }
    if (!problem.empty()) {
        std::fflush(stdout);
        std::fprintf(stderr, "mopak: %s\n", printable(problem).c_str());
        return 1;
    }
    std::printf("%s: %s added, %d bytes in all\n", printable(pack).c_str(),
                count_of(archive.header.file_count - count, "file").c_str(), archive.header.total_size);
    return 0;
}

// The files of the command line. False where they can't all be added; then nothing has been touched.
bool collect(const pack_options& options, const pack_copy& copy, source_list& list) {
    const std::string own[] = {options.pack, copy.lock_path()};
    list = collect_sources(options.names, own);
    for (const std::string& note : list.notes)
        std::fprintf(stderr, "mopak: %s\n", printable(note).c_str());
    if (list.error.empty() && list.sources.empty()) list.error = options.pack + ": no files to add";
    if (!list.error.empty()) std::fprintf(stderr, "mopak: %s\n", printable(list.error).c_str());
    return list.error.empty();
}

// What keeps so many files from being added, or nothing.
std::string too_many(const mopak& archive, const source_list& list) {
    const auto is_new = [&](const pack_source& each) { return archive.look_up(each.name) == nullptr; };
    const std::int64_t count = archive.header.file_count + std::ranges::count_if(list.sources, is_new);
    if (count <= static_cast<std::int64_t>(mopak_most_files)) return {};
    return "can't take " + std::to_string(count) + " files, for an archive holds " +
           std::to_string(mopak_most_files) + " at most";
}

// A slip on the command line must not cost a file: only an archive, or nothing at all, is written over.
bool may_be_replaced(const std::string& path) {
    std::error_code ignored;
    if (!fs::exists(path, ignored)) return true;
    mopak archive;
    return fs::is_regular_file(path, ignored) &&
           (fs::file_size(path, ignored) == 0 || open_pack(path, archive).empty());
}

} // namespace

int pack_create(const pack_options& options) {
    pack_copy copy(options.pack);
    std::string problem = copy.lock();
    if (problem.empty() && !may_be_replaced(options.pack)) problem = "is there already and is no archive";
    source_list list;
    if (problem.empty() && !collect(options, copy, list)) return 1;
    mopak archive;
    if (problem.empty()) problem = too_many(archive, list);
    if (problem.empty()) problem = copy.make(0);
    archive.set_version(options.version_major, options.version_minor);
    if (problem.empty())
        if (const char* failed = archive.write_new(copy.path(), options.info)) problem = in_words(failed);
    if (problem.empty()) return complete(archive, copy, list, options.pack);
    report(options.pack, problem);
    return 1;
}

int pack_add(const pack_options& options) {
    pack_copy copy(options.pack);
    std::string problem = copy.lock();
    mopak archive;
    if (problem.empty()) problem = open_pack(options.pack, archive);
    source_list list;
    if (problem.empty() && !collect(options, copy, list)) return 1;
    if (problem.empty()) problem = too_many(archive, list);
    if (problem.empty()) problem = copy.make(archive.header.total_size);
    if (!problem.empty()) {
        report(options.pack, problem);
        return 1;
    }
    archive.archive_path = copy.path();
    return complete(archive, copy, list, options.pack);
}
