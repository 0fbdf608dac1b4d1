#include "assets/data_tree.h"

#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace assets {
namespace {

namespace fs = std::filesystem;

std::string failure(const fs::path& path, const std::string& reason) {
    return path.string() + ": " + reason;
}

std::string reason_text(int number) {
    return std::generic_category().message(number);
}

// Anything under this name counts, a link that leads nowhere as well.
bool is_there(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

// Opens a new file beside `path` under a name that nobody else has, and tells the name. Null if none can be
// made, with the reason in errno.
std::FILE* open_beside(const fs::path& path, fs::path& unfinished) {
    static std::atomic<int> next{0};
    std::FILE* file = nullptr;
    do {
        unfinished = path.string() + "." + std::to_string(getpid()) + "-" + std::to_string(next++) + ".part";
        file = std::fopen(unfinished.c_str(), "wbx");
    } while (file == nullptr && errno == EEXIST);
    return file;
}

// Writes all bytes and closes the file. Gives the reason of a failure, 0 on success.
int write_and_close(std::FILE* file, const file_bytes& bytes) {
    int reason = 0;
    if (std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size()) reason = errno;
    if (std::fclose(file) != 0 && reason == 0) reason = errno;
    return reason;
}

enum class outcome { placed, already_there, failed };

// Moves a finished file into place unless something has come there meanwhile. A hard link never replaces;
// where the file system has none, a look and a rename must do.
outcome place(const fs::path& from, const fs::path& to, std::error_code& error) {
    fs::create_hard_link(from, to, error);
    if (!error) return outcome::placed;
    if (error == std::errc::file_exists || is_there(to)) return outcome::already_there;
    fs::rename(from, to, error);
    return error ? outcome::failed : outcome::placed;
}

outcome make_file(const maker& row, const fs::path& path, std::string& error) {
    if (is_there(path)) return outcome::already_there;
    std::error_code reason;
    fs::create_directories(path.parent_path(), reason);
    if (reason) {
        error = failure(path.parent_path(), reason.message());
        return outcome::failed;
    }
    const file_bytes bytes = row.make();
    if (bytes.empty()) {
        error = failure(path, "could not be drawn");
        return outcome::failed;
    }
    fs::path unfinished;
    std::FILE* file = open_beside(path, unfinished);
    if (file == nullptr) {
        error = failure(path, reason_text(errno));
        return outcome::failed;
    }
    outcome result = outcome::failed;
    if (const int number = write_and_close(file, bytes); number != 0) {
        error = failure(path, reason_text(number));
    } else {
        result = place(unfinished, path, reason);
        if (result == outcome::failed) error = failure(path, reason.message());
    }
    std::error_code ignored;
    fs::remove(unfinished, ignored);
    return result;
}

} // namespace

tree_result make_data_tree(const fs::path& root, std::span<const maker> what, int threads,
                           const std::function<void(std::string_view, bool)>& report) {
    tree_result result;
    std::mutex guard; // of `result` and `report`
    std::atomic<std::size_t> next{0};
    std::atomic<bool> stopped{false};
    auto work = [&] {
        while (!stopped) {
            const std::size_t i = next++;
            if (i >= what.size()) return;
            std::string error;
            const outcome done = make_file(what[i], root / what[i].path, error);
            const std::lock_guard lock(guard);
            if (done == outcome::failed) {
                stopped = true;
                if (result.error.empty()) result.error = error;
                return;
            }
            (done == outcome::placed ? result.made : result.already_there) += 1;
            report(what[i].path, done == outcome::placed);
        }
    };
    std::vector<std::thread> helpers;
    for (int i = 1; i < threads; ++i)
        helpers.emplace_back(work);
    work();
    for (std::thread& helper : helpers)
        helper.join();
    return result;
}

} // namespace assets
