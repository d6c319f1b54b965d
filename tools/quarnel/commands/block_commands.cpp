// SPDX-License-Identifier: MIT
// quarnel block inspect / build: a calibration block field by field.

#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>

#include "atomic_file.h"
#include "block/block_codec.h"
#include "block/block_json.h"
#include "commands/commands.h"
#include "library_session.h"
#include "sample_panel.h"
#include "tool_error.h"

namespace quarnel::tool {
namespace {

using Json = nlohmann::ordered_json;

// The block status the library's reader arrives at: 0 good, 1 header CRC,
// 5 tone CRC, 6 bad magic or a string past the block's end.
int BlockStatus(const DecodedBlock& block) {
    if (!block.magicOk || !block.stringFits) return 6;
    if (block.toneCrc && !block.toneCrc->ok()) return 5;
    return block.headerCrc.ok() ? 0 : 1;
}

std::string Hex(const std::vector<uint8_t>& bytes) {
    std::string text;
    char pair[3];
    for (uint8_t b : bytes) {
        std::snprintf(pair, sizeof pair, "%02x", b);
        text += pair;
    }
    return text;
}

// A damaged block's text fields hold any bytes; they are shown, not refused.
std::string Dump(const Json& json, int indent = -1) {
    return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

Json Crc(const CrcCheck& crc) { return Json{{"stored", crc.stored}, {"computed", crc.computed}, {"ok", crc.ok()}}; }

struct LibraryVerdict {
    int32_t status;
    int32_t calibrationVersion;
    bool factoryData;
};

LibraryVerdict AskLibrary(const std::string& path, bool verbose) {
    CurveOptions options;
    options.calibFile = path;
    options.verbose = verbose;
    LibrarySession session(options, false);
    const int32_t status = session.Request(CCTAPI_INIT_GAIN);
    return {status, session.context().biosVer, session.context().fromBios != 0};
}

Json Report(const DecodedBlock& block, const LibraryVerdict& library) {
    Json json = DescriptionToJson(block.description);
    json["header_crc"] = Crc(block.headerCrc);
    if (block.toneCrc) json["tone_crc"] = Crc(*block.toneCrc);
    if (block.description.version >= 6)
        json["gamma_string"] = {{"method", block.useMethod},
                                {"size", block.lutString.size()},
                                {"hex", Hex(block.lutString)},
                                {"decode_status", block.gammaStatus.value_or(-1)}};
    json["block_status"] = BlockStatus(block);
    json["library"] = {{"init_status", library.status},
                       {"calibration_version", library.calibrationVersion},
                       {"factory_data", library.factoryData}};
    return json;
}

// Each key on one line; short arrays stay on it, long ones are summarised.
void PrintText(const Json& json, const std::string& indent = "") {
    for (const auto& [key, value] : json.items()) {
        std::string shown = Dump(value);
        if (value.is_object() && key != "gamma_lut") {
            std::cout << indent << key << ":\n";
            PrintText(value, indent + "  ");
            continue;
        }
        if (key == "stored" || key == "computed") {
            char hex[8];
            std::snprintf(hex, sizeof hex, "0x%04x", value.get<unsigned>());
            shown = hex;
        }
        if (key == "gamma_lut")
            for (const char* plane : {"red", "green", "blue"}) {
                const auto& p = value.at(plane);
                std::cout << indent << key << " " << plane << " at 0 64 128 192 255: " << p[0] << ' ' << p[64] << ' '
                          << p[128] << ' ' << p[192] << ' ' << p[255] << '\n';
            }
        else
            std::cout << indent << key << ": " << shown << '\n';
    }
}

void Inspect(const std::string& path, bool json, bool verbose) {
    const std::string bytes = ReadInputFile(path);
    const auto problem = FindBlockProblem(bytes);
    if (bytes.size() < kBlockSize) throw ToolError(kExitData, path + ": " + *problem);
    Block block{};
    std::memcpy(block.data(), bytes.data(), kBlockSize);
    const DecodedBlock decoded = DecodeBlock(block, verbose);
    const Json report = Report(decoded, AskLibrary(path, verbose));
    json ? void(std::cout << Dump(report, 2) << '\n') : PrintText(report);
    if (problem) throw ToolError(kExitData, path + ": " + *problem);
}

void Build(const std::string& descriptionFile, const std::string& output, bool verbose) {
    const BlockDescription description = DescriptionFromJson(ReadInputFile(descriptionFile), descriptionFile);
    Block block{};
    try {
        block = EncodeBlock(description, verbose);
    } catch (const ToolError& e) {
        throw ToolError(e.code(), descriptionFile + ": " + e.what());
    }
    WriteFileAtomically(output, std::string_view(reinterpret_cast<const char*>(block.data()), block.size()));
}

}  // namespace

void AddBlockCommands(CLI::App& app, const GlobalOptions& global) {
    auto* block = app.add_subcommand("block", "Inspect or author a 512-byte calibration block");
    block->require_subcommand(1);
    block->footer("Example:\n  quarnel block build panel.json -o panel.bin && quarnel block inspect panel.bin");

    struct InspectCli {
        std::string file;
        bool json = false;
    };
    auto inspectCli = std::make_shared<InspectCli>();
    auto* inspect = block->add_subcommand("inspect", "Show every field, both CRC checks and the library's verdict");
    inspect->add_option("FILE", inspectCli->file, "Calibration block")->required();
    inspect->add_flag("--json", inspectCli->json, "Print JSON; its fields are a block description");
    inspect->footer("Example:\n  quarnel block inspect panel.bin --json");
    inspect->callback([inspectCli, &global] { Inspect(inspectCli->file, inspectCli->json, global.verbose); });

    struct BuildCli {
        std::string descriptionFile, output;
    };
    auto buildCli = std::make_shared<BuildCli>();
    auto* build = block->add_subcommand("build", "Write a block from a JSON description, with correct CRCs");
    build
        ->add_option("DESCRIPTION", buildCli->descriptionFile,
                     "JSON description (the fields that inspect --json prints)")
        ->required();
    build->add_option("-o", buildCli->output, "Block file to write")->required();
    build->footer("Example:\n  quarnel block build panel.json -o panel.bin");
    build->callback([buildCli, &global] { Build(buildCli->descriptionFile, buildCli->output, global.verbose); });

    auto sampleOutput = std::make_shared<std::string>("-");
    auto* sample = block->add_subcommand("sample", "Print the built-in sample panel's description, a template");
    sample->add_option("-o", *sampleOutput, "File to write (default: standard output)");
    sample->footer("Example:\n  quarnel block sample -o panel.json && quarnel block build panel.json -o panel.bin");
    sample->callback(
        [sampleOutput] { WriteFileAtomically(*sampleOutput, DescriptionToJson(SamplePanel()).dump(2) + "\n"); });
}

}  // namespace quarnel::tool
