// Every operator on surfaces of the show's size; the rows stand in the files beside this one.
#include <benchmark/benchmark.h>

#include "morvane/gtex/gtex.h"
#include "morvane/gtex/tunnel.h"

int main(int argc, char** argv) {
    frame_tables_init();
    tunnel_tables_init();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
