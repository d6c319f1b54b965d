// SPDX-License-Identifier: MIT
// quarnel version: the tool's version and the library's, as the library
// reports them.

#include <iostream>
#include <memory>
#include <sstream>

#include "commands/commands.h"
#include "io/quiet_stdout.h"
#include "quarnel/cctapi.h"

namespace quarnel::tool {
namespace {

// ShowVersion prints "...Version: <text>"; keep the text.
std::string LibraryBuild() {
    const std::string printed = CaptureStdout([] { ShowVersion(); });
    const auto at = printed.find("Version: ");
    std::string text = at == std::string::npos ? printed : printed.substr(at + 9);
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
    return text;
}

}  // namespace

std::string VersionText(bool verbose) {
    auto ctx = std::make_unique<CctContext>();
    {
        QuietStdout quiet(verbose);
        CCTAPI(CCTAPI_GET_VERSION, ctx.get());
    }
    std::ostringstream text;
    text << "quarnel tool " << QUARNEL_VERSION << '\n'
         << "library interface " << ((ctx->version >> 16) & 0xFF) << '.' << ((ctx->version >> 8) & 0xFF) << '.'
         << (ctx->version & 0xFF) << '\n'
         << "library build " << LibraryBuild();
    return text.str();
}

void AddVersionCommand(CLI::App& app, const GlobalOptions& global) {
    auto* command = app.add_subcommand("version", "Show the tool's and the library's versions");
    command->footer("Example:\n  quarnel version");
    command->callback([&global] { std::cout << VersionText(global.verbose) << '\n'; });
}

}  // namespace quarnel::tool
