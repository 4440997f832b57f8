#include "Pairs.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <vector>

// The reporter gathers the repetitions of each benchmark and prints one line a pair: the medians in
// nanoseconds, the ratio, the allocations of ours, and whether ours is within its limit.

namespace {

struct Entry
{
    std::string name;
    Pairs::Limit limit;
    long allocations;
};

std::vector<Entry> sEntries;

// Made when the first file asks for it.
std::vector<void (*)()> &groups()
{
    static std::vector<void (*)()> list;
    return list;
}

class TableReporter : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type == Run::RT_Iteration)
                mTimes[run.run_name.function_name].push_back(timeOf(run));
        }
    }

    void Finalize() override
    {
        std::printf("%-44s %10s %10s %7s %7s\n", "operation", "ours ns", "peer ns", "ratio",
                    "allocs");
        for (const Entry &entry : sEntries) {
            if (mTimes.count(entry.name + "/ours") == 0 || mTimes.count(entry.name + "/peer") == 0)
                continue;
            const double ours = median(entry.name + "/ours");
            const double peer = median(entry.name + "/peer");
            const bool fast = ours <= entry.limit.ratio * peer + entry.limit.extraNs;
            const bool lean
                = entry.limit.allocations < 0 || entry.allocations <= entry.limit.allocations;
            std::printf("%-44s %10.2f %10.2f %7.2f %7ld%s%s\n", entry.name.c_str(), ours, peer,
                        ours / peer, entry.allocations, fast ? "" : "  SLOW",
                        lean ? "" : "  ALLOCATES");
        }
    }

private:
    static double timeOf(const Run &run)
    {
        const bool isMeasured = run.run_name.time_type == "manual_time";
        return isMeasured ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
    }

    double median(const std::string &name)
    {
        std::vector<double> &times = mTimes[name];
        const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::nth_element(times.begin(), middle, times.end());
        return *middle;
    }

    std::map<std::string, std::vector<double>> mTimes;
};

} // namespace

Pairs::Group::Group(void (*addPairs)())
{
    groups().push_back(addPairs);
}

void Pairs::add(const std::string &name, const Limit &limit, long allocations)
{
    sEntries.push_back({name, limit, allocations});
}

int main(int argc, char **argv)
{
    for (const auto addPairs : groups())
        addPairs();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    TableReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
