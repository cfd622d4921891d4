#include "Report.h"

#include <cstdio>
#include <cstdlib>

void require(bool agree, const char *message)
{
    if (agree)
        return;
    std::fprintf(stderr, "benchmark: %s\n", message);
    std::exit(EXIT_FAILURE);
}

void reportTimePerItem(benchmark::State &state, int itemsPerIteration)
{
    using benchmark::Counter;
    state.counters["per_item"] =
        Counter(itemsPerIteration, Counter::kIsIterationInvariantRate | Counter::kInvert);
}

int runBenchmarks(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return EXIT_FAILURE;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return EXIT_SUCCESS;
}
