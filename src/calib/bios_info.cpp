// SPDX-License-Identifier: MIT
#include "calib/bios_info.h"

#include <algorithm>
#include <memory>

#include "calib/source.h"
#include "codec/lut_string.h"
#include "core/lut16.h"
#include "diag/debug.h"

namespace quarnel {
namespace {

constexpr int32_t kNoBiosVersion = -1;
constexpr int32_t kLutlessVersion = 5;  // tone data without a usable gamma LUT

void CopyTargets(const BiosData& data, FactoryTargets& targets) {
    targets.valid = 0;
    if (data.version < 4) return;
    std::copy_n(data.firstWhite, 2, targets.firstWhite);
    targets.targetLuminance = data.targetLuminance;
    std::copy_n(data.defaultWhite, 2, targets.defaultWhite);
}

// Per channel: the block's black and grey levels, then the full-drive
// measurement of the context's bios table.
void FillTone(const BiosData& data, const CctContext& ctx, ToneModel& tone) {
    tone.levelCount = kToneLevelCount;
    tone.levels = kToneLevels;
    ToneChannel* channels[3] = {&tone.toneR, &tone.toneG, &tone.toneB};
    for (int c = 0; c < 3; ++c) {
        ToneChannel& channel = *channels[c];
        std::copy_n(data.tone[c], kToneRowSize, channel.begin());
        std::copy_n(ctx.bios[c], 3, channel.begin() + kToneRowSize);
    }
    tone.toneModelReady = 1;
}

bool DecodeGammaLut(const BiosData& data, CctContext& ctx) {
    // The string starts with its own length byte, as the encoder wrote it.
    if (data.lutString.empty()) return false;
    return codec::LoadLut(&ctx.gammaLut[0][0], data.lutString.data(), kLutEntries, data.useMethod) == 0;
}

}  // namespace

void GetBIOSInfo(CctContext& ctx, ToneModel& tone, FactoryTargets& targets) {
    DebugMessage(L"VOK: Enter GetBIOSInfo()\n");
    ctx.fromBios = 0;
    DebugMessage(L"VOK: Start Open()\n");
    std::unique_ptr<BiosData> data = Open(ctx.enableUserK, ctx.kalzenPath, ctx.kalzenFilename, ctx.panelIndex);
    DebugMessage(L"VOK: Finish Open()\n");
    if (data == nullptr) {
        DebugMessage(L"VOK: handler is null\n");
        ctx.fromBios = 0;
        ctx.biosVer = kNoBiosVersion;
        return;
    }

    DebugMessage(L"VOK: handler not null\n");
    ctx.fromBios = 1;
    for (int row = 0; row < 4; ++row) std::copy_n(data->primaries[row], 3, ctx.bios[row]);
    ctx.biosVer = data->version;
    CopyTargets(*data, targets);
    if (data->version >= 5) {
        FillTone(*data, ctx, tone);
        if (data->version >= 6 && !DecodeGammaLut(*data, ctx)) ctx.biosVer = kLutlessVersion;
        ctx.gammaK = 1;
        targets.valid = 1;
    }
    Close(std::move(data));
    DebugMessage(L"VOK: Exit  GetBIOSInfo()\n");
}

}  // namespace quarnel
