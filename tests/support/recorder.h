// Runs morvane-record as a program.
#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/temp_file.h"

inline std::string quoted(const std::string& path) {
    return "'" + path + "'";
}

// `before` is put in front of the command. What the recorder prints goes to "out" and "err" in `folder`;
// returns its exit code.
inline int run_recorder(const std::string& arguments, const temp_folder& folder,
                        const std::string& before = {}) {
    const std::string command = before + quoted(std::string(MORVANE_TEST_TOOLS) + "/morvane-record") + " " +
                                arguments + " >" + quoted(folder.path("out")) + " 2>" +
                                quoted(folder.path("err"));
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

inline std::string text_in(const temp_folder& folder, const char* name) {
    const std::vector<std::uint8_t> bytes = folder.read(name);
    return {bytes.begin(), bytes.end()};
}

// Files in `folder` but what the recorder printed.
inline std::vector<std::string> files_in(const temp_folder& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        if (const std::string name = entry.path().filename(); name != "out" && name != "err")
            names.push_back(name);
    return names;
}
