// Runs the benchmarks of a program side by side (their repetitions interleaved at random) and prints, behind
// Google Benchmark's own table, medians as ratios: benchmarks named "group/..." are compared with
// "group/hand_written".

#include <iomanip>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

class Ratios final : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (run.aggregate_name == "median")
                medians_[run.run_name.function_name] = run.GetAdjustedRealTime();
    }

    void Finalize() override {
        std::cout << "\nRatios of medians\n" << std::fixed << std::setprecision(2);
        for (const auto& [name, time] : medians_) {
            const auto measure = medians_.find(name.substr(0, name.find('/')) + "/hand_written");
            if (measure != medians_.end())
                std::cout << std::setw(8) << time / measure->second << "  " << name << '\n';
        }
    }

private:
    std::map<std::string, double> medians_;
};

} // namespace

int main(int argc, char** argv) {
    std::vector<char*> arguments(argv, argv + argc);
    std::string defaults[] = {"--benchmark_repetitions=15", "--benchmark_min_time=0.05",
                              "--benchmark_enable_random_interleaving=true",
                              "--benchmark_report_aggregates_only=true"};
    // Before the caller's own, which win.
    std::size_t at = 1;
    for (std::string& option : defaults)
        arguments.insert(arguments.begin() + static_cast<std::ptrdiff_t>(at++), option.data());
    auto count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 1;
    Ratios ratios;
    benchmark::RunSpecifiedBenchmarks(&ratios);
    return 0;
}
