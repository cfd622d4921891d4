#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <utility>
#include <vector>

/// Ends the program with the message unless @p agree. For what is checked once, before any timing:
/// a contestant that gives another result does other work, and its time says nothing.
void require(bool agree, const char *message);

/// Reports the CPU time of one of the items that each iteration worked on.
void reportTimePerItem(benchmark::State &state, int itemsPerIteration);

/// Registers NAME/CONTESTANT/ROWS for each of the contestants, which count the same rows' matches:
/// all the same number, and not none.
void registerCounts(const char *name, int rowCount,
                    const std::vector<std::pair<const char *, std::function<int()>>> &contestants);

/// Runs what has been registered, as the command line says. For the end of main().
int runBenchmarks(int argc, char **argv);
