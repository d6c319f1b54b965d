// SPDX-License-Identifier: MIT
// The program's own main: runs the benchmarks with the display the flags
// ask for and then reports, on standard error, every request's CPU time over
// its floor's, from the medians when the run repeats. The run's context names
// the processor.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace quarnel::bench {
namespace {

// The floor each request is measured against: its own, for the same request
// and lut api type.
std::string FloorOf(const std::string& name) {
    if (name == "BM_Request1") return "BM_Request1Floor";
    const std::string lut = "BM_Request/";
    const std::string native = "BM_Request8/";
    if (name.rfind(lut, 0) == 0) return "BM_RequestFloor/" + name.substr(lut.size());
    if (name.rfind(native, 0) == 0) return "BM_Request8Floor/" + name.substr(native.size());
    if (name == "BM_Request0" || name == "BM_Request1") return name + "Floor";
    return {};
}

// The processor's model name, where the system tells it.
std::string ProcessorModel() {
    std::ifstream info("/proc/cpuinfo");
    for (std::string line; std::getline(info, line);)
        if (line.rfind("model name", 0) == 0) return line.substr(line.find(':') + 2);
    return "an unnamed processor";
}

// Passes every report on to the display and keeps each benchmark's CPU time:
// its median when there are repetitions, else its one run.
class FloorRatios final : public benchmark::BenchmarkReporter {
public:
    explicit FloorRatios(benchmark::BenchmarkReporter& display) : display_(display) {}

    bool ReportContext(const Context& context) override { return display_.ReportContext(context); }

    void ReportRuns(const std::vector<Run>& runs) override {
        display_.ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.error_occurred) continue;
            const std::string name = run.run_name.str();
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
                medians_[name] = run.GetAdjustedCPUTime();
            else if (run.run_type == Run::RT_Iteration)
                singles_[name] = run.GetAdjustedCPUTime();
        }
    }

    void Finalize() override { display_.Finalize(); }

    void PrintRatios() const {
        const auto& times = medians_.empty() ? singles_ : medians_;
        bool header = false;
        for (const auto& [name, time] : times) {
            const auto floor = times.find(FloorOf(name));
            if (floor == times.end() || floor->second <= 0.0) continue;
            if (!header) std::fprintf(stderr, "\n%-36s %12s %12s %9s\n", "request", "cpu ns", "its floor", "vs floor");
            header = true;
            std::fprintf(stderr, "%-36s %12.0f %12.0f %9.2f\n", name.c_str(), time, floor->second,
                         time / floor->second);
        }
    }

private:
    benchmark::BenchmarkReporter& display_;
    std::map<std::string, double> medians_;
    std::map<std::string, double> singles_;
};

}  // namespace
}  // namespace quarnel::bench

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::AddCustomContext("cpu_model", quarnel::bench::ProcessorModel());
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    const std::unique_ptr<benchmark::BenchmarkReporter> display(benchmark::CreateDefaultDisplayReporter());
    quarnel::bench::FloorRatios reporter(*display);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintRatios();
    benchmark::Shutdown();
    return 0;
}
