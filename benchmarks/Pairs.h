#ifndef PAIRS_H
#define PAIRS_H

#include "Allocations.h"

#include <benchmark/benchmark.h>

#include <string>

/*!
    Benchmarks in pairs: one of ours beside its peer, in the same program and run.
*/
namespace Pairs {

//! Has its function called before the benchmarks run, to add pairs; an object of it in each file.
class Group
{
public:
    explicit Group(void (*addPairs)());
};

//! What ours may take: \a ratio times the peer plus \a extraNs, and \a allocations of memory.
struct Limit
{
    double ratio = 1;
    double extraNs = 0;
    long allocations = -1; //!< -1: as many as it likes
};

void add(const std::string &name, const Limit &limit, long allocations);

template <class F>
void addBenchmark(const std::string &name, F f)
{
    benchmark::RegisterBenchmark(name.c_str(), [f](benchmark::State &state) {
        F operation = f;
        for ([[maybe_unused]] auto _ : state)
            benchmark::DoNotOptimize(operation());
    });
}

template <class F>
long allocationsOf(F f)
{
    benchmark::DoNotOptimize(f()); // what only the first call does is not counted
    const long before = allocations();
    benchmark::DoNotOptimize(f());
    return allocations() - before;
}

//! Registers a pair; each function does one operation and returns its result.
template <class Ours, class Peer>
void add(const std::string &name, const Limit &limit, Ours ours, Peer peer)
{
    add(name, limit, allocationsOf(ours));
    addBenchmark(name + "/ours", ours);
    addBenchmark(name + "/peer", peer);
}

//! Registers a pair of operations on files; \a undo is called after each and not measured.
template <class Ours, class Peer, class Undo>
void addUndone(const std::string &name, double ratio, Ours ours, Peer peer, Undo undo)
{
    add(name, {ratio, 0, -1}, -1);
    const auto addOne = [undo](const std::string &one, auto operation) {
        benchmark::RegisterBenchmark(one.c_str(), [operation, undo](benchmark::State &state) {
            for ([[maybe_unused]] auto _ : state) {
                benchmark::DoNotOptimize(operation());
                state.PauseTiming();
                undo();
                state.ResumeTiming();
            }
        });
    };
    addOne(name + "/ours", ours);
    addOne(name + "/peer", peer);
}

//! Registers a pair of functions that return the seconds that they have measured themselves.
template <class Ours, class Peer>
void addMeasured(const std::string &name, double ratio, Ours ours, Peer peer)
{
    add(name, {ratio, 0, -1}, -1);
    const auto addOne = [](const std::string &one, auto measure) {
        const auto run = [measure](benchmark::State &state) {
            for ([[maybe_unused]] auto _ : state)
                state.SetIterationTime(measure());
        };
        benchmark::RegisterBenchmark(one.c_str(), run)->UseManualTime()->Iterations(20);
    };
    addOne(name + "/ours", ours);
    addOne(name + "/peer", peer);
}

} // namespace Pairs

#endif // PAIRS_H
