#include "driver/run.h"
#include "platform/program.h"
#include "platform/winbase.h"

int main(int count, char** words) {
    program::start("morvane");
    if (const std::optional<int> code = winbase::box_process(count, words)) return *code;
    return run_show();
}
