// SPDX-License-Identifier: MIT
// quarnel block inspect / build: a calibration block field by field.

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <memory>

#include "commands/commands.h"
#include "formats/block_json.h"
#include "formats/ti3_format.h"
#include "io/atomic_file.h"
#include "io/input_file.h"
#include "io/tool_error.h"
#include "model/block_codec.h"
#include "model/block_file.h"
#include "model/hex.h"
#include "model/sample_panel.h"
#include "session/library_session.h"
#include "session/panel_source.h"

namespace quarnel::tool {
namespace {

using Json = nlohmann::ordered_json;

// The block status the library's reader arrives at: 0 good, 1 header CRC,
// 5 tone CRC, 6 bad magic or a string past the block's end.
int BlockStatus(const DecodedBlock& block) {
    if (!block.magicOk || !block.stringFits) return 6;  // what the library calls a parse failure
    if (block.toneCrc && !block.toneCrc->ok()) return 5;
    return block.headerCrc.ok() ? 0 : 1;
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
    if (block.string)
        json["lut_string"] = {{"method", block.string->method},
                              {"size", block.string->bytes.front()},
                              {"hex", ToHex(block.string->bytes)},
                              {"decode_status", block.gammaStatus}};
    json["block_status"] = BlockStatus(block);
    const auto problem = FindBlockProblem(block);
    json["problem"] = problem ? Json(*problem) : Json(nullptr);
    json["library"] = {{"init_status", library.status},
                       {"calibration_version", library.calibrationVersion},
                       {"factory_data", library.factoryData}};
    return json;
}

// Each key on one line; short arrays stay on it, long ones are summarised.
void PrintText(const Json& json, const std::string& indent = "") {
    for (const auto& [key, value] : json.items()) {
        std::string shown = value.is_null() ? "none" : Dump(value);
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

DecodedBlock ReadBlock(const std::string& path, bool verbose) {
    const std::string bytes = ReadBlockFile(path);
    Block block{};
    std::copy(bytes.begin(), bytes.end(), block.begin());
    return DecodeBlock(block, verbose);
}

void Inspect(const std::string& path, bool json, bool verbose) {
    const DecodedBlock decoded = ReadBlock(path, verbose);
    const Json report = Report(decoded, AskLibrary(path, verbose));
    json ? void(std::cout << Dump(report, 2) << '\n') : PrintText(report);
    if (const auto problem = FindBlockProblem(decoded)) throw ToolError(kExitData, path + ": " + *problem);
}

DecodedBlock ReadGoodBlock(const std::string& path) {
    DecodedBlock block = ReadBlock(path, false);
    if (const auto problem = FindBlockProblem(block)) throw ToolError(kExitData, path + ": " + *problem);
    return block;
}

void Measurements(const std::string& path, const std::string& output) {
    const DecodedBlock block = ReadGoodBlock(path);
    const std::string description =
        "Factory measurements of " + path + ", calibration version " + std::to_string(block.description.version);
    WriteFileAtomically(output, MeasurementsToTi3(MeasurementsFromBlock(block.description), description));
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
    // The block is written as described, damage and all; the author hears
    // once, in the words inspect and qa use, that the library will not use it.
    if (const auto problem = FindBlockProblem(DecodeBlock(block, verbose)))
        std::cerr << "quarnel: warning: " << output << ": " << *problem << '\n';
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
    inspect->add_option("FILE", inspectCli->file, "Calibration block")->required()->type_name("FILE");
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
        ->required()
        ->type_name("FILE");
    build->add_option("-o", buildCli->output, "Block file to write")->required()->type_name("FILE");
    build->footer("Example:\n  quarnel block build panel.json -o panel.bin");
    build->callback([buildCli, &global] { Build(buildCli->descriptionFile, buildCli->output, global.verbose); });

    struct MeasurementsCli {
        std::string file, output = "-";
    };
    auto measurementsCli = std::make_shared<MeasurementsCli>();
    auto* measurements =
        block->add_subcommand("measurements", "Write the factory measurements as a CGATS .ti3 for ArgyllCMS");
    measurements->add_option("BLOCK", measurementsCli->file, "Calibration block")->required()->type_name("FILE");
    measurements->add_option("-o", measurementsCli->output, "File to write (default: standard output)")
        ->type_name("FILE");
    measurements->footer(
        "Black and each channel's grey levels (version 5 on), primaries and white: RGB in percent to XYZ,\n"
        "white at Y = 100.\nExample:\n  quarnel block measurements panel.bin -o panel.ti3 && colprof -as panel");
    measurements->callback([measurementsCli] { Measurements(measurementsCli->file, measurementsCli->output); });

    AddBlockLotCommand(*block);

    auto sampleOutput = std::make_shared<std::string>("-");
    auto* sample = block->add_subcommand("sample", "Print the built-in sample panel's description, a template");
    sample->add_option("-o", *sampleOutput, "File to write (default: standard output)")->type_name("FILE");
    sample->footer("Example:\n  quarnel block sample -o panel.json && quarnel block build panel.json -o panel.bin");
    sample->callback(
        [sampleOutput] { WriteFileAtomically(*sampleOutput, DescriptionToJson(SamplePanel()).dump(2) + "\n"); });
}

}  // namespace quarnel::tool
