// The data tree of the show, as the maker makes it, in the build folder.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

// Makes the tree's folder the working directory. The test runner has made the tree anew before the first test
// that needs it; a test program that is run by hand lets the maker make what is missing.
inline void go_to_data_tree() {
    const std::string command =
        std::string("'") + MORVANE_TEST_TOOLS + "/morvane-data' '" + MORVANE_TEST_TREE + "' >/dev/null";
    static const int code = std::system(command.c_str());
    if (code != 0) throw std::runtime_error("the data tree can't be made: " + command);
    std::filesystem::current_path(MORVANE_TEST_TREE);
}
