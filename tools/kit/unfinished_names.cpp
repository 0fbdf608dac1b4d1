#include "tools/kit/unfinished_names.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <climits>
#include <filesystem>
#include <system_error>

namespace {

enum class state { free, being_changed, noted };

struct place_of_name {
    std::atomic<state> now = state::free;
    std::array<char, PATH_MAX> path{};
};
std::array<place_of_name, 16> places;
static_assert(std::atomic<state>::is_always_lock_free);

} // namespace

int note_unfinished(const std::string& path) {
    std::error_code problem;
    const std::string full = std::filesystem::absolute(path, problem).string();
    if (problem || full.size() >= PATH_MAX) return -1;
    for (std::size_t i = 0; i < places.size(); ++i) {
        state free = state::free;
        if (!places[i].now.compare_exchange_strong(free, state::being_changed)) continue;
        places[i].path[full.copy(places[i].path.data(), full.size())] = '\0';
        places[i].now = state::noted;
        return static_cast<int>(i);
    }
    return -1;
}

void forget_unfinished(int place) {
    if (place >= 0) places[static_cast<std::size_t>(place)].now = state::free;
}

void remove_unfinished() {
    for (place_of_name& each : places)
        if (each.now == state::noted) unlink(each.path.data());
}
