// SPDX-License-Identifier: MIT
#include "calib/bios_info.h"

#include <algorithm>
#include <optional>

#include "calib/source.h"
#include "codec/lut_string.h"
#include "core/lut16.h"
#include "diag/debug.h"
#include "facts/block_layout.h"

namespace quarnel {
namespace {

constexpr int32_t kNoBiosVersion = -1;

void CopyTargets(const BiosData& data, FactoryTargets& targets) {
    targets.valid = 0;
    if (data.version < kTargetsVersion) return;
    std::copy_n(data.firstWhite, 2, targets.firstWhite);
    targets.targetLuminance = data.targetLuminance;
    std::copy_n(data.defaultWhite, 2, targets.defaultWhite);
}

// Per channel: the block's black and grey levels, then its full-drive
// measurement of the primary.
void FillTone(const BiosData& data, ToneModel& tone) {
    tone.levelCount = kToneLevelCount;
    tone.levels = kToneLevels;
    ToneChannel* channels[3] = {&tone.toneR, &tone.toneG, &tone.toneB};
    for (int c = 0; c < 3; ++c) {
        ToneChannel& channel = *channels[c];
        std::copy_n(data.tone[c], kToneRowSize, channel.begin());
        std::copy_n(data.primaries[c], 3, channel.begin() + kToneRowSize);
    }
    tone.toneModelReady = 1;
}

bool DecodeGammaLut(const BiosData& data, uint16_t* gammaLut) {
    // The string starts with its own length byte, as the encoder wrote it.
    if (data.lutString.empty()) return false;
    return codec::LoadLut(gammaLut, data.lutString.data(), kLutEntries, data.useMethod) == 0;
}

}  // namespace

void GetBIOSInfo(const CalibrationSource& source, FactoryData& out, ToneModel& tone, FactoryTargets& targets) {
    DebugMessage(L"VOK: Enter GetBIOSInfo()\n");
    out.fromBios = 0;
    DebugMessage(L"VOK: Start Open()\n");
    std::optional<BiosData> data =
        Open(source.enableUserK, source.kalzenPath, source.kalzenFilename, source.panelIndex);
    DebugMessage(L"VOK: Finish Open()\n");
    if (!data) {
        DebugMessage(L"VOK: handler is null\n");
        out.fromBios = 0;
        out.biosVer = kNoBiosVersion;
        return;
    }

    DebugMessage(L"VOK: handler not null\n");
    out.fromBios = 1;
    for (int row = 0; row < 4; ++row) std::copy_n(data->primaries[row], 3, out.bios.row[row]);
    out.biosVer = data->version;
    CopyTargets(*data, targets);
    if (data->version >= kToneVersion) {
        FillTone(*data, tone);
        // A string that does not decode leaves tone data without a gamma LUT.
        const bool carriesString = facts::Carries(facts::TrailerOf(data->version).lutString, data->version);
        if (carriesString && !DecodeGammaLut(*data, out.gammaLut)) out.biosVer = kToneVersion;
        out.gammaK = 1;
        targets.valid = 1;
    }
    Close(data);
    DebugMessage(L"VOK: Exit  GetBIOSInfo()\n");
}

}  // namespace quarnel
