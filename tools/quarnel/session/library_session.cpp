// SPDX-License-Identifier: MIT
#include "session/library_session.h"

#include <algorithm>
#include <cstring>
#include <iostream>

#include "io/memory_file.h"
#include "io/quiet_stdout.h"
#include "io/tool_error.h"
#include "model/block_codec.h"
#include "model/block_file.h"
#include "model/sample_panel.h"
#include "session/panel_source.h"

namespace quarnel::tool {
namespace {

// Reads the block with its bound; a file of any other size is refused here.
std::optional<std::string> BlockFileProblem(const std::string& path, bool verbose) {
    const std::string bytes = ReadBlockFile(path);
    Block block{};
    std::copy(bytes.begin(), bytes.end(), block.begin());
    return FindBlockProblem(DecodeBlock(block, verbose));
}

}  // namespace

LibrarySession::LibrarySession(const CurveOptions& options, bool vetBlock)
    : ctx_(std::make_unique<CctContext>()), verbose_(options.verbose) {
    // The fallback colour space, handed over valid so that request 1 does not
    // report a replaced matrix.
    for (size_t r = 0; r < 4; ++r)
        for (size_t k = 0; k < 3; ++k) ctx_->icc[r][k] = DefaultColourSpace()[r][k];
    // The panel's own base LUT is the caller's to give; a plain panel has the identity.
    const Curve identity = IdentityCurve();
    for (size_t c = 0; c < 3; ++c) std::memcpy(ctx_->oriLut[c], identity[c].data(), sizeof ctx_->oriLut[c]);
    ctx_->interval = options.interval;
    ctx_->lutApiType = options.apiType;
    ctx_->lutDcModeScale = options.brightness;
    ctx_->rdLevels = options.readingLevels;
    ctx_->rdIndex = options.readingIndex;
    if (options.firmwarePanel) {
        ctx_->panelIndex = *options.firmwarePanel;
        firmwarePanel_ = options.firmwarePanel;
        sourceName_ = "firmware panel " + std::to_string(*options.firmwarePanel);
        return;
    }
    if (options.calibFile) {
        // Refused here with the reason, rather than by the library with a status.
        if (vetBlock)
            if (const auto problem = BlockFileProblem(*options.calibFile, verbose_))
                throw ToolError(kExitData, *options.calibFile + ": " + *problem);
        sourcePath_ = *options.calibFile;
        sourceName_ = *options.calibFile;
    } else {
        const auto block = EncodeBlock(SamplePanel(), verbose_);
        sampleFile_ =
            std::make_unique<MemoryFile>(std::string_view(reinterpret_cast<const char*>(block.data()), block.size()));
        sourcePath_ = sampleFile_->path();
        sourceName_ = "sample panel";
    }
    // The library joins path and file name without a separator.
    ctx_->enableUserK = 1;
    ctx_->kalzenPath = "";
    ctx_->kalzenFilename = sourcePath_.c_str();
}

LibrarySession::~LibrarySession() = default;

int32_t LibrarySession::Init() {
    const int32_t status = Request(CCTAPI_INIT_GAIN);
    if (status == CCT_ERR_FILE_INVALID) {
        const auto problem = BlockFileProblem(sourcePath_, verbose_);
        throw ToolError(kExitData, sourceName_ + ": " + problem.value_or("calibration block failed its checks"));
    }
    if (status == CCT_ERR_FILE_NOT_OPENED) throw ToolError(kExitNoInput, sourceName_ + ": cannot read input");
    // A command may open many sessions on one panel (a picture runs every
    // mode); the user hears about the missing firmware data once.
    static bool firmwareGapTold = false;
    if (firmwarePanel_ && ctx_->fromBios == 0 && !firmwareGapTold) {
        std::cerr << "quarnel: " << sourceName_ << ": " << FirmwareGap() << '\n';
        firmwareGapTold = true;
    }
    return status;
}

std::string LibrarySession::FirmwareGap() const {
    constexpr int32_t kNoDevice = -1;  // OLKReadDataBlock: the device does not open
    uint8_t block[kBlockSize];
    int32_t status = 0;
    {
        QuietStdout quiet(verbose_);
        status = OLKReadDataBlock(nullptr, block, *firmwarePanel_);
    }
    const std::string consequence = "; the library answers without factory data";
    if (status == kNoDevice) return "this machine has no firmware calibration device" + consequence;
    return "the firmware gave no usable calibration block" + consequence;
}

int32_t LibrarySession::Request(uint32_t code) {
    QuietStdout quiet(verbose_);
    return CCTAPI(code, ctx_.get());
}

int32_t LibrarySession::Vx(int32_t mode, const Curve* toneCurve) {
    uint16_t planes[3][kCurveSize] = {};
    if (toneCurve != nullptr)
        for (size_t c = 0; c < 3; ++c) std::memcpy(planes[c], (*toneCurve)[c].data(), sizeof planes[c]);
    QuietStdout quiet(verbose_);
    return CCTAPI_VX(mode, ctx_.get(), toneCurve != nullptr ? &planes[0][0] : nullptr);
}

PanelSubject DescribePanel(const LibrarySession& session) {
    const CctContext& ctx = session.context();
    PanelSubject panel{session.sourceName(), ctx.biosVer, ctx.fromBios != 0, {}};
    panel.measured.primaries = ColourTableRows(panel.factoryData ? ctx.bios : ctx.icc);
    if (panel.factoryData && !session.sourcePath().empty()) {
        const std::string bytes = ReadBlockFile(session.sourcePath());
        Block block{};
        std::copy(bytes.begin(), bytes.end(), block.begin());
        panel.measured.tone = MeasurementsFromBlock(DecodeBlock(block, false).description).tone;
    }
    return panel;
}

Curve LibrarySession::OutCurve() const {
    Curve curve;
    for (size_t c = 0; c < 3; ++c) std::memcpy(curve[c].data(), ctx_->outLut[c], sizeof ctx_->outLut[c]);
    return curve;
}

}  // namespace quarnel::tool
