#include "driver/run.h"
#include "platform/program.h"

int main() {
    program::start("morvane");
    return run_show();
}
