// SPDX-License-Identifier: MIT
// quarnel string encode / decode: the gamma LUT string of a block.

#include <cctype>
#include <filesystem>
#include <iostream>
#include <memory>

#include "atomic_file.h"
#include "commands/commands.h"
#include "formats/text_formats.h"
#include "formats/write_curve.h"
#include "lut_string.h"
#include "tool_error.h"

namespace quarnel::tool {
namespace {

std::vector<uint8_t> ParseHex(const std::string& hex) {
    const auto bad = [&](const std::string& why) { return ToolError(kExitData, "string " + hex + ": " + why); };
    if (hex.empty() || hex.size() % 2 != 0 || hex.size() > 2 * 255) throw bad("expected 1 to 255 bytes in hex");
    std::vector<uint8_t> bytes;
    for (size_t i = 0; i < hex.size(); i += 2) {
        if (!std::isxdigit(static_cast<unsigned char>(hex[i])) ||
            !std::isxdigit(static_cast<unsigned char>(hex[i + 1])))
            throw bad("malformed hex");
        bytes.push_back(static_cast<uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    }
    if (bytes[0] > bytes.size()) throw bad("shorter than its length byte says");
    return bytes;
}

void Encode(const std::string& file, bool verbose) {
    const std::string text = ReadInputFile(file);
    const bool json = std::filesystem::path(file).extension() == ".json";
    const auto string = EncodeLutString(json ? CurveFromJson(text, file) : CurveFromCsv(text, file), verbose);
    if (!string)
        throw ToolError(kExitData, file +
                                       ": cannot be stored as a LUT string (each plane must start at 0, end at "
                                       "65280 and rise in 8-bit steps of 0 to 7)");
    std::string hex;
    for (uint8_t b : string->bytes) hex += "0123456789abcdef"[b >> 4], hex += "0123456789abcdef"[b & 15];
    std::cout << "method " << string->method << '\n' << hex << '\n';
}

void Decode(const std::string& hex, int method, const std::string& output, const std::string& format, bool verbose) {
    const CurveFormat chosen = output == "-" && format.empty() ? CurveFormat::Csv : ChooseCurveFormat(output, format);
    Curve curve{};
    if (DecodeLutString(ParseHex(hex), method, curve, verbose) != 0)
        throw ToolError(kExitData,
                        "string " + hex + ": does not decode to a LUT with method " + std::to_string(method));
    WriteCurve(curve, chosen, output);
}

}  // namespace

void AddStringCommands(CLI::App& app, const GlobalOptions& global) {
    auto* string = app.add_subcommand("string", "Encode a LUT as a firmware LUT string, or decode one");
    string->require_subcommand(1);
    string->footer("Example:\n  quarnel string encode gamma.csv\n  quarnel string decode 04000000 --method 1");

    auto encodeFile = std::make_shared<std::string>();
    auto* encode = string->add_subcommand("encode", "Print the shorter string's method and its bytes in hex");
    encode->add_option("LUT", *encodeFile, "LUT as CSV (index,red,green,blue) or JSON")->required();
    encode->footer("Example:\n  quarnel string encode gamma.csv");
    encode->callback([encodeFile, &global] { Encode(*encodeFile, global.verbose); });

    struct DecodeCli {
        std::string hex, output = "-", format;
        int method = 0;
    };
    auto cli = std::make_shared<DecodeCli>();
    auto* decode = string->add_subcommand("decode", "Decode a string in hex into a LUT");
    decode->add_option("HEX", cli->hex, "The string, length byte first")->required();
    decode->add_option("--method", cli->method, "0 Huffman, 1 position lists")->required()->check(CLI::Range(0, 1));
    decode->add_option("-o", cli->output, "Output file (default: CSV to standard output)");
    decode->add_option("--format", cli->format, "csv, json, cal, icc, png or svg (default: from the extension)");
    decode->footer("Example:\n  quarnel string decode 04000000 --method 1 -o identity.json");
    decode->callback([cli, &global] { Decode(cli->hex, cli->method, cli->output, cli->format, global.verbose); });
}

}  // namespace quarnel::tool
