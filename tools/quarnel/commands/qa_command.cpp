// SPDX-License-Identifier: MIT
// quarnel qa: every block of a production lot checked, measured and
// reported, the work spread over worker processes.

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>

#include "commands/commands.h"
#include "commands/number_options.h"
#include "formats/qa_outputs.h"
#include "formats/qa_report.h"
#include "io/input_file.h"
#include "io/output_stream.h"
#include "io/progress_bar.h"
#include "io/tool_error.h"
#include "io/worker_pool.h"

namespace quarnel::tool {
namespace {

namespace fs = std::filesystem;

struct QaCli {
    std::vector<std::string> paths;
    bool quiet = false;
    std::string csv, json, report;
    unsigned jobs = 0;
    QaThresholds thresholds;
};

// Each PATH in turn: a file as it is, a folder as every *.bin under it, sorted.
std::vector<std::string> BlockFiles(const std::vector<std::string>& paths) {
    std::vector<std::string> files;
    for (const auto& path : paths) {
        std::error_code error;
        if (!fs::is_directory(path, error)) {
            RequireRegularFile(path);
            files.push_back(path);
            continue;
        }
        std::vector<std::string> found;
        fs::recursive_directory_iterator it(path, error), end;
        for (; !error && it != end; it.increment(error))
            if (it->path().extension() == ".bin" && it->is_regular_file(error)) found.push_back(it->path().string());
        if (error) throw ToolError(kExitNoInput, path + ": cannot read input: " + error.message());
        std::sort(found.begin(), found.end());
        files.insert(files.end(), found.begin(), found.end());
    }
    return files;
}

// Opened before any block is checked, so that an output that cannot be
// created fails the run at once rather than after the whole lot.
struct QaOutputs {
    std::unique_ptr<OutputStream> csv, json, report;
    explicit QaOutputs(const QaCli& cli) {
        const auto open = [](const std::string& path) {
            return path.empty() ? nullptr : std::make_unique<OutputStream>(path);
        };
        csv = open(cli.csv), json = open(cli.json), report = open(cli.report);
    }
};

void WriteOutputs(const QaCli& cli, QaOutputs& out, const std::vector<std::string>& files,
                  const std::vector<QaResult>& results, const QaLot& lot) {
    std::vector<std::string> outliers;
    for (size_t i = 0; i < files.size(); ++i)
        if (lot.Outlier(results[i])) outliers.push_back(files[i]);
    if (out.csv) *out.csv << QaCsvHeader();
    if (out.json) *out.json << QaJsonHead(lot);
    for (size_t i = 0; i < files.size(); ++i) {
        if (!cli.quiet) std::cout << QaLine(files[i], results[i], lot);
        if (out.csv) *out.csv << QaCsvRow(files[i], results[i], lot);
        if (out.json) *out.json << (i == 0 ? "" : ",\n") << QaJsonRow(files[i], results[i], lot);
    }
    std::cout << QaSummary(lot, outliers);
    if (out.json) *out.json << QaJsonTail(lot);
    if (out.report) WriteQaReport(*out.report, files, results, lot);
    for (auto* stream : {out.csv.get(), out.json.get(), out.report.get()})
        if (stream) stream->Commit();
}

void Run(const QaCli& cli, const GlobalOptions& global) {
    const std::vector<std::string> files = BlockFiles(cli.paths);
    if (files.empty()) throw ToolError(kExitNoInput, "no calibration blocks (*.bin) to check");
    QaOutputs outputs(cli);
    // Filled as the results arrive, in order, so that the workers (forked
    // first) share none of it.
    std::vector<QaResult> results;
    results.reserve(files.size());
    QaLot lot(cli.thresholds);
    {
        ProgressBar bar("qa", files.size());
        const auto keep = [&](QaResult result) {
            lot.Add(result);
            results.push_back(std::move(result));
            bar.Show(results.size());
        };
        WorkerPool pool;
        pool.workers = cli.jobs > 0 ? cli.jobs : AvailableProcessors();
        pool.work = [&](size_t item) { return PackResult(CheckBlock(files[item], global.verbose)); };
        pool.collect = [&](size_t, std::string_view bytes) {
            QaResult result;
            if (!UnpackResult(bytes, result)) result = {{}, "the check's answer was cut short"};
            keep(std::move(result));
        };
        pool.lost = [&](size_t, const std::string& why) { keep({{}, why}); };
        RunWorkerPool(pool, files.size());
    }
    lot.Finish();
    WriteOutputs(cli, outputs, files, results, lot);
    if (lot.passed() != files.size())
        throw ToolError(kExitChecksFailed, std::to_string(files.size() - lot.passed()) + " of " +
                                               std::to_string(files.size()) + " blocks are not ok or miss a threshold");
}

}  // namespace

void AddQaCommand(CLI::App& app, const GlobalOptions& global) {
    auto cli = std::make_shared<QaCli>();
    auto* qa = app.add_subcommand("qa", "Check every block of a production lot: verdicts, whites, gamuts, outliers");
    qa->add_option("PATH", cli->paths, "Block files, or folders of them (every *.bin under it)")
        ->required()
        ->type_name("FILE OR FOLDER");
    qa->add_flag("-q,--quiet", cli->quiet, "No line per block, only the closing summary");
    qa->add_option("--csv", cli->csv, "Write one row per block to this CSV file")->type_name("FILE");
    qa->add_option("--json", cli->json, "Write every block's and mode's figures to this JSON file")->type_name("FILE");
    qa->add_option("--report", cli->report, "Write a self-contained HTML report to this file")->type_name("FILE");
    qa->add_option("-j,--jobs", cli->jobs, "Worker processes (default: one per processor)")
        ->check(CLI::Range(1u, 256u));
    QaThresholds& t = cli->thresholds;
    qa->add_option("--max-duv", t.maxDuv, "Largest distance of the normal white from D65, in u'v'")
        ->capture_default_str()
        ->check(FiniteFrom(0));
    qa->add_option("--min-srgb", t.minSrgb, "Smallest share of the sRGB gamut covered")
        ->capture_default_str()
        ->check(FiniteRange(0, 1));
    qa->add_option("--min-p3", t.minP3, "Smallest share of the DCI-P3 gamut covered")
        ->capture_default_str()
        ->check(FiniteRange(0, 1));
    qa->add_option("--min-luminance", t.minLuminanceShare,
                   "Smallest share of the native white's luminance the normal white keeps")
        ->capture_default_str()
        ->check(FiniteRange(0, 1));
    qa->add_option("--min-gamma", t.minGamma, "Lowest native gamma of any channel (blocks with tone readings)")
        ->capture_default_str()
        ->check(FiniteAbove(0));
    qa->add_option("--max-gamma", t.maxGamma, "Highest native gamma of any channel")
        ->capture_default_str()
        ->check(FiniteAbove(0));
    qa->add_option("--outlier", t.outlierK, "Flag values more than K median absolute deviations from the lot's median")
        ->capture_default_str()
        ->check(FiniteAbove(0));
    qa->footer(
        "Exit status 0 when every block is ok and within the thresholds, 1 when any is not.\n"
        "Example:\n  quarnel block lot --count 1000 --seed 7 -o lot && quarnel qa lot --quiet --report lot.html");
    qa->callback([cli, &global] { Run(*cli, global); });
}

}  // namespace quarnel::tool
