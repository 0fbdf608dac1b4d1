// Puts the files of the makers into a folder.
#pragma once

#include <filesystem>
#include <functional>
#include <span>
#include <string>

#include "assets/makers.h"

namespace assets {

struct tree_result {
    int made = 0;
    int already_there = 0;
    std::string error; // path and reason of the first failure; empty when all went well
};

// Makes each file of `what` that isn't there below `root`, with its folders, by `threads` threads. A file
// that is there stays as it is, whatever it holds. Each file is written under a name of its own beside its
// place and moved into place when whole. After a failure no further file is begun. `report(path, made)` is
// called once for each file, never by two threads at a time.
tree_result make_data_tree(const std::filesystem::path& root, std::span<const maker> what, int threads,
                           const std::function<void(std::string_view path, bool made)>& report);

} // namespace assets
