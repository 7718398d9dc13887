#pragma once

// Runs the registered benchmarks and then prints, for each pair of a KivCore benchmark and its
// Qt counterpart, the ratio of their times per iteration (below 1: KivCore is faster).

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace BenchRatio {

class Reporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &iRuns) override
    {
        for (const Run &run : iRuns)
            if (run.run_type == Run::RT_Iteration && run.iterations > 0)
                times[run.benchmark_name()] = run.GetAdjustedRealTime();
        ConsoleReporter::ReportRuns(iRuns);
    }
    std::map<std::string, double> times;
};

/// Pairs of (ours, Qt's) benchmark names, with a limit the ratio should stay under (0: the
/// pair is shown for scale only).
struct Pair
{
    std::string ours;
    std::string theirs;
    double limit;
};

inline int runAndCompare(int argc, char **argv, const std::vector<Pair> &iPairs)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\n%-58s %10s %8s\n", "comparison (ours / reference)", "ratio", "limit");
    for (const Pair &p : iPairs) {
        auto a = reporter.times.find(p.ours);
        auto b = reporter.times.find(p.theirs);
        if (a == reporter.times.end() || b == reporter.times.end() || b->second <= 0)
            continue;
        const double ratio = a->second / b->second;
        if (p.limit > 0)
            std::printf("%-58s %10.4g %8.2f%s\n", (p.ours + " / " + p.theirs).c_str(), ratio,
                        p.limit, ratio <= p.limit ? "" : "  <-- over the limit");
        else
            std::printf("%-58s %10.4g %8s\n", (p.ours + " / " + p.theirs).c_str(), ratio, "-");
    }
    benchmark::Shutdown();
    return 0;
}

} // namespace BenchRatio
