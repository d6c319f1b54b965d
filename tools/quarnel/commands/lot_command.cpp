// SPDX-License-Identifier: MIT
// quarnel block lot: a made-up production lot to try QA on.

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>

#include "commands/commands.h"
#include "commands/number_options.h"
#include "io/atomic_file.h"
#include "io/tool_error.h"
#include "model/panel_lot.h"

namespace quarnel::tool {
namespace {

namespace fs = std::filesystem;

struct LotCli {
    size_t count = 0;
    uint64_t seed = 1;
    double damaged = 0.05;
    std::string folder;
};

// A lot is thousands of small new files: each is written plainly, without
// the flush to disk that replacing a precious file deserves.
void WriteLotFile(const fs::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) throw ToolError(kExitIoError, path.string() + ": write error: " + std::strerror(errno));
}

void WriteLot(const LotCli& cli) {
    std::error_code error;
    fs::create_directories(cli.folder, error);
    if (error || !fs::is_directory(cli.folder))
        throw ToolError(kExitCantCreate, cli.folder + ": cannot create output: " +
                                             (error ? error.message() : std::string("not a folder")));
    const size_t digits = std::to_string(cli.count).size();
    std::string manifest = "file,version,damage\n";
    for (size_t i = 1; i <= cli.count; ++i) {
        std::string number = std::to_string(i);
        const std::string name = "panel-" + std::string(digits - number.size(), '0') + number + ".bin";
        const LotPanel panel = MakeLotPanel(cli.seed, i, cli.damaged);
        WriteLotFile(fs::path(cli.folder) / name, panel.bytes);
        manifest += name + ',' + std::to_string(panel.version) + ',' + panel.damage + '\n';
    }
    WriteFileAtomically((fs::path(cli.folder) / "manifest.csv").string(), manifest);
}

}  // namespace

void AddBlockLotCommand(CLI::App& block) {
    auto cli = std::make_shared<LotCli>();
    auto* lot = block.add_subcommand("lot", "Write a made-up production lot of varied sample panels, some damaged");
    lot->add_option("--count", cli->count, "Blocks to write")
        ->required()
        ->check(CLI::Range(size_t{1}, size_t{1000000}));
    lot->add_option("--seed", cli->seed, "Seed of the variation: the same seed, the same lot")->capture_default_str();
    lot->add_option("--damaged", cli->damaged, "Share of damaged blocks (flipped byte, truncated, bad magic)")
        ->capture_default_str()
        ->check(FiniteRange(0, 1));
    lot->add_option("-o", cli->folder, "Folder to write panel-N.bin and manifest.csv into")
        ->required()
        ->type_name("FOLDER");
    lot->footer("Example:\n  quarnel block lot --count 1000 --seed 7 -o lot && quarnel qa lot --quiet");
    lot->callback([cli] { WriteLot(*cli); });
}

}  // namespace quarnel::tool
