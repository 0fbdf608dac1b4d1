// The command `morvane-data` without the process around it.
#pragma once

#include <cstdio>
#include <span>
#include <string_view>

namespace assets {

// Does what `words`, the words after the command's name, ask for: makes the data tree, prints the list of
// files or the usage. What goes well is told on `out`, an error in one line on `err`. Gives the exit code: 0,
// 1 for a file that can't be made, 2 for a wrong option.
int run_command(std::span<const std::string_view> words, std::FILE* out, std::FILE* err);

} // namespace assets
