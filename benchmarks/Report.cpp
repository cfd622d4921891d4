#include "Report.h"

#include <cstdio>
#include <cstdlib>
#include <string>

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

void registerCounts(const char *name, int rowCount,
                    const std::vector<std::pair<const char *, std::function<int()>>> &contestants)
{
    const int expected = contestants.front().second();
    require(expected > 0, "no row matches");
    for (const auto &[contestant, count] : contestants) {
        const std::string title =
            std::string(name) + '/' + contestant + '/' + std::to_string(rowCount);
        require(count() == expected, (title + " counts other matches").c_str());
        benchmark::RegisterBenchmark(title.c_str(),
                                     [count = count, rowCount](benchmark::State &state) {
                                         for (auto _ : state)
                                             benchmark::DoNotOptimize(count());
                                         reportTimePerItem(state, rowCount);
                                     });
    }
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
