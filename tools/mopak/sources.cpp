#include "tools/mopak/sources.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <unordered_map>
#include <utility>

#include "morvane/mopak/format.h"

namespace fs = std::filesystem;

namespace {

class collector {
  public:
    explicit collector(std::span<const std::string> own_paths) : own(own_paths) {}

    void add_word(const std::string& word) {
        std::error_code problem;
        const fs::file_status status = fs::status(word, problem);
        if (!fs::exists(status))
            fail(word, problem ? problem.message() : std::strerror(ENOENT));
        else if (fs::is_directory(status))
            add_folder(word);
        else if (!fs::is_regular_file(status))
            fail(word, "is no plain file");
        else if (is_own(word))
            fail(word, "is the archive itself");
        else if (fs::file_size(word, problem) == 0)
            fail(word, "is empty, and an archive can't hold an empty file");
        else
            add_file(word);
    }

    source_list list;

  private:
    void add_folder(const std::string& folder) {
        std::error_code problem;
        std::vector<std::string> paths;
        for (fs::recursive_directory_iterator each(folder, problem), end; !problem && each != end;
             each.increment(problem))
            if (!each->is_directory(problem) || each->is_symlink(problem))
                paths.push_back(each->path().string());
        if (problem) return fail(folder, problem.message());
        std::ranges::sort(paths);
        for (const std::string& path : paths)
            add_from_folder(path);
    }

    void add_from_folder(const std::string& path) {
        if (!list.error.empty()) return;
        std::error_code problem;
        if (is_own(path)) return;
        if (!fs::is_regular_file(path, problem))
            list.notes.push_back(path + ": is no plain file and is left out");
        else if (fs::file_size(path, problem) == 0)
            list.notes.push_back(path +
                                 ": is empty and is left out, for an archive can't hold an empty file");
        else
            add_file(path);
    }

    void add_file(const std::string& path) {
        std::error_code problem;
        const std::uintmax_t size = fs::file_size(path, problem);
        const std::string name = name_in_archive(path);
        if (problem) return fail(path, problem.message());
        if (size > INT32_MAX) return fail(path, "is 2 GiB or larger, too large for an archive");
        if (!mopak_text_fits(name, mopak_name_room))
            return fail(path, "has a name of more than " + std::to_string(mopak_name_room - 1) + " bytes");
        const auto [known, is_new] = names.try_emplace(name, list.sources.size());
        if (!is_new) return note_second(path, list.sources[known->second].path);
        note_other_name(path, name);
        list.sources.push_back({path, name, static_cast<std::int64_t>(size)});
    }

    // The same file given twice is nothing to speak of.
    void note_second(const std::string& path, const std::string& first) {
        std::error_code problem;
        if (!fs::equivalent(first, path, problem))
            list.notes.push_back(path + ": is left out, for " + first + " has its name");
    }

    // Once for all that loses its root or "..": each such file has the same to say.
    void note_other_name(const std::string& path, const std::string& name) {
        if (noted || fs::path(path).lexically_normal() == name) return;
        noted = true;
        list.notes.push_back(path + ": is called " + name +
                             " in the archive, as files are unpacked below a folder");
    }

    bool is_own(const std::string& path) const {
        std::error_code problem;
        return std::ranges::any_of(own,
                                   [&](const auto& each) { return fs::equivalent(path, each, problem); });
    }

    void fail(const std::string& path, const std::string& why) {
        if (list.error.empty()) list.error = path + ": " + why;
    }

    std::span<const std::string> own;
    std::unordered_map<std::string, std::size_t> names; // with their places in the list
    bool noted = false;
};

} // namespace

std::int64_t source_list::total() const {
    std::int64_t sum = 0;
    for (const pack_source& each : sources)
        sum += each.size;
    return sum;
}

std::string name_in_archive(const std::string& path) {
    const fs::path normal = fs::path(path).lexically_normal().relative_path();
    fs::path name;
    for (const fs::path& part : normal)
        if (part != ".." && part != ".") name /= part;
    return name.string();
}

source_list collect_sources(std::span<const std::string> words, std::span<const std::string> own) {
    collector all(own);
    for (const std::string& word : words)
        if (all.list.error.empty()) all.add_word(word);
    return std::move(all.list);
}
