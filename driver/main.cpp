#include "driver/run.h"

int main() {
    return run_show();
}
