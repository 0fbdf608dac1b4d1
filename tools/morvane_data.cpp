// morvane-data: draws the files of the data tree.
#include <algorithm>
#include <vector>

#include "morvane/base/program.h"
#include "tools/maker/command.h"

int main(int count, char** words) {
    program::start("morvane-data");
    const std::vector<std::string_view> rest(words + std::min(count, 1), words + count);
    return assets::run_command(rest, stdout, stderr);
}
