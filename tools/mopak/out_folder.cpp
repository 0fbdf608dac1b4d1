#include "tools/mopak/out_folder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

#include "tools/mopak/half_written.h"

namespace {

constexpr char stem[] = "mopak"; // of files that are being written

// The steps from a folder to a file below it; none if the name leads to no file.
std::vector<std::string> steps_of(std::string_view name) {
    std::vector<std::string> steps;
    bool at_file = false;
    while (!name.empty()) {
        const std::string_view step = name.substr(0, name.find_first_of("/\\"));
        const bool at_end = step.size() == name.size();
        name.remove_prefix(at_end ? step.size() : step.size() + 1);
        const bool leads_on = !step.empty() && step != "." && step != "..";
        if (leads_on) steps.emplace_back(step);
        if (step == ".." && !steps.empty()) steps.pop_back();
        at_file = at_end && leads_on;
    }
    return at_file ? steps : std::vector<std::string>();
}

std::string joined(std::span<const std::string> steps) {
    std::string path;
    for (const std::string& step : steps)
        path.append(path.empty() ? "" : "/").append(step);
    return path;
}

// Opens a folder within another, made if need be, but no link to one. -1 on failure.
int step_into(int folder, const std::string& name) {
    if (mkdirat(folder, name.c_str(), 0777) != 0 && errno != EEXIST) return -1;
    return openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

bool is_link(int folder, const std::string& name) {
    struct stat status = {};
    return fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(status.st_mode);
}

bool write_all(int file, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(file, bytes.data(), bytes.size());
        if (written < 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

std::string write_file(int folder, const std::string& name, std::span<const std::uint8_t> bytes) {
    half_written file(folder, stem, 0666);
    const bool done = file.descriptor() >= 0 && write_all(file.descriptor(), bytes) && file.finish(name);
    return done ? "" : std::strerror(errno);
}

} // namespace

std::string place_of(std::string_view name) {
    return joined(steps_of(name));
}

out_folder::out_folder(const std::string& path) {
    std::error_code failed;
    std::filesystem::create_directories(path, failed);
    root = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (root < 0) problem = std::strerror(errno);
}

out_folder::~out_folder() {
    if (root >= 0) close(root);
}

std::string out_folder::write(std::string_view name, std::span<const std::uint8_t> bytes) {
    const std::vector<std::string> steps = steps_of(name);
    if (steps.empty()) return "is refused, for its name leads to no file";

    int folder = dup(root);
    std::string failure = folder < 0 ? std::strerror(errno) : "";
    for (std::size_t i = 0; i + 1 < steps.size() && failure.empty(); ++i) {
        const int next = step_into(folder, steps[i]);
        if (next < 0) failure = std::strerror(errno);
        if (next < 0 && is_link(folder, steps[i]))
            failure = "is refused, for '" + steps[i] + "' on its way is a link";
        close(folder);
        folder = next;
    }
    if (failure.empty() && tidied.insert(joined(std::span(steps).first(steps.size() - 1))).second)
        remove_half_written(folder, stem);
    if (failure.empty()) failure = write_file(folder, steps.back(), bytes);
    if (folder >= 0) close(folder);
    return failure;
}
