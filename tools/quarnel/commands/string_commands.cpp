// SPDX-License-Identifier: MIT
// quarnel string encode / decode: the gamma LUT string of a block.

#include <iostream>
#include <memory>

#include "commands/commands.h"
#include "formats/text_formats.h"
#include "formats/write_curve.h"
#include "io/atomic_file.h"
#include "io/file_name.h"
#include "io/input_file.h"
#include "io/tool_error.h"
#include "model/hex.h"
#include "model/lut_string.h"

namespace quarnel::tool {
namespace {

void Encode(const std::string& file, bool verbose) {
    const std::string text = ReadInputFile(file);
    const bool json = HasExtension(file, "json");
    const Curve curve = json ? CurveFromJson(text, file) : CurveFromCsv(text, file);
    LutString string;
    try {
        string = EncodeLutStringChecked(curve, verbose);
    } catch (const ToolError& e) {
        throw ToolError(e.code(), file + ": " + e.what());
    }
    std::cout << "method " << string.method << '\n' << ToHex(string.bytes) << '\n';
}

void Decode(const std::string& hex, int method, const std::string& output, const std::string& format, bool verbose) {
    const CurveFormat chosen = output == "-" && format.empty() ? CurveFormat::Csv : ChooseCurveFormat(output, format);
    Curve curve{};
    if (DecodeLutString(ParseLutStringHex(hex), method, curve, verbose) != 0)
        throw ToolError(kExitData,
                        "string " + hex + ": does not decode to a LUT with method " + std::to_string(method));
    WriteCurve(curve, chosen, output, {UnknownPanel("LUT string"), "decoded gamma LUT", std::nullopt});
}

}  // namespace

void AddStringCommands(CLI::App& app, const GlobalOptions& global) {
    auto* string = app.add_subcommand("string", "Encode a LUT as a firmware LUT string, or decode one");
    string->require_subcommand(1);
    string->footer("Example:\n  quarnel string encode gamma.csv\n  quarnel string decode 04000000 --method 1");

    auto encodeFile = std::make_shared<std::string>();
    auto* encode = string->add_subcommand("encode", "Print the shorter string's method and its bytes in hex");
    encode->add_option("LUT", *encodeFile, "LUT as CSV (index,red,green,blue) or JSON")->required()->type_name("FILE");
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
    decode->add_option("-o", cli->output, "Output file (default: CSV to standard output)")->type_name("FILE");
    decode->add_option("--format", cli->format, "csv, json, cal, icc, png or svg (default: from the extension)");
    decode->footer("Example:\n  quarnel string decode 04000000 --method 1 -o identity.json");
    decode->callback([cli, &global] { Decode(cli->hex, cli->method, cli->output, cli->format, global.verbose); });
}

}  // namespace quarnel::tool
