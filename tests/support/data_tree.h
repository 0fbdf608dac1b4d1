// The data tree of the show, as the maker makes it, in the build folder.
#pragma once

#include <filesystem>
#include <stdexcept>

#include "assets/data_tree.h"
#include "assets/makers.h"

// Makes the tree's folder the working directory. The test runner has made the tree anew before the first test
// that needs it; a test program that is run by hand makes what is missing.
inline void go_to_data_tree() {
    const std::filesystem::path root = MORVANE_TEST_TREE;
    const assets::tree_result made =
        assets::make_data_tree(root, assets::makers(), 2, [](std::string_view, bool) {});
    if (!made.error.empty()) throw std::runtime_error(made.error);
    std::filesystem::current_path(root);
}
