#include "tools/maker/data_tree.h"

#include <atomic>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "tools/kit/output_file.h"

namespace assets {
namespace {

namespace fs = std::filesystem;

std::string failure(const fs::path& path, const std::string& reason) {
    return path.string() + ": " + reason;
}

// Anything under this name counts, a link that leads nowhere as well.
bool is_there(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

enum class outcome { placed, already_there, failed };

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
    output_file file(path.string());
    bool taken = false; // since it was looked for
    std::string problem = file.open();
    if (problem.empty()) problem = file.write(bytes);
    if (problem.empty()) problem = file.finish_if_free(taken);
    if (problem.empty()) return taken ? outcome::already_there : outcome::placed;
    error = failure(path, problem);
    return outcome::failed;
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
