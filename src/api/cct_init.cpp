// SPDX-License-Identifier: MIT
#include "api/cct_init.h"

#include <algorithm>
#include <optional>

#include "api/context_values.h"
#include "calib/bios_info.h"
#include "calib/error_code.h"
#include "color/gain_init.h"
#include "color/gain_types.h"
#include "core/lut16.h"
#include "diag/debug.h"

namespace quarnel {
namespace {

// The table for a caller without a usable one. Rows red, green, blue, white;
// columns X, Y, Z. The primaries are the sRGB colorants as an ICC profile
// stores them, adapted to the D50 connection white with the Bradford
// transform, so they sum to D50 (0.9643, 1.0, 0.8251). The white row is the
// display's own white, sRGB's D65: that is the white a panel without factory
// data shows, and the one its warm and cold whites are placed around. The
// solver uses only the primaries' chromaticities, and D65 lies inside them.
constexpr double kDefaultIcc[4][3] = {
    {0.43607, 0.22249, 0.01392},
    {0.38515, 0.71687, 0.09708},
    {0.14307, 0.06061, 0.7141},
    {0.95045, 1.0, 1.08905},
};

// X and Y must be positive and Z not negative; blue and white need some Z.
// The tests are made as written, so a value that is not a number passes.
bool RowUsable(const double row[3], int index) {
    if (row[0] <= 0.0 || row[1] <= 0.0 || row[2] < 0.0) return false;
    return !((index == kBlue || index == kWhite) && row[2] == 0.0);
}

void ValidateIcc(CctContext& ctx) {
    for (int row = kRed; row <= kWhite; ++row) {
        if (RowUsable(ctx.icc[row], row)) continue;
        CctapiErrorCode() = CCT_ERR_ICC_DEFAULTED;
        std::copy_n(&kDefaultIcc[0][0], 4 * 3, &ctx.icc[0][0]);
        return;
    }
}

// GetBIOSInfo on the record: reads fromBios, bios, biosVer and gammaK in and
// writes them back, decodes the factory LUT straight into gammaLut, and
// fills the block's targets and tone model.
void ReadFactoryData(CctContext& ctx, ToneModel& tone, FactoryTargets& targets) {
    FactoryData data{ctx.fromBios, TableOf(ctx.bios), ctx.biosVer, ctx.gammaK, &ctx.gammaLut[0][0]};
    GetBIOSInfo(SourceOf(ctx), data, tone, targets);
    ctx.fromBios = data.fromBios;
    std::copy_n(&data.bios.row[0][0], 4 * 3, &ctx.bios[0][0]);
    ctx.biosVer = data.biosVer;
    ctx.gammaK = data.gammaK;
}

// Reads fromBios, bios or icc, biosVer, gammaK, lutApiType and the base
// LUTs; writes the five gain triples, and gammaLut or gammaK for tone data.
void InitGains(CctContext& ctx, const FactoryTargets& targets, ToneModel& tone, bool useFixedTarget) {
    const bool fromBios = ctx.fromBios != 0;
    ModeGains gains =
        SolveModeGains({TableOf(fromBios ? ctx.bios : ctx.icc), fromBios, ctx.biosVer, targets}, useFixedTarget);
    if (fromBios && ctx.biosVer == kToneVersion && ctx.gammaK != 0) {
        if (const std::optional<Lut16> lut = FactoryGammaLut(tone))
            std::copy(lut->begin(), lut->end(), &ctx.gammaLut[0][0]);
        else
            ctx.gammaK = 0;
    }
    DebugMessage(L"VOK: Check gain\n");
    CheckModeGains(gains, ctx.gammaK != 0 ? &ctx.gammaLut[0][0] : &ctx.oriLut[0][0], ctx.lutApiType);
    StoreGains(gains, ctx);
}

}  // namespace

int32_t CCT_Init(CctContext& ctx, bool useFixedTarget) {
    CctapiErrorCode() = 0;
    DebugMessage(L"VOK: Enter CCT_Init()\n");
    ToneModel tone;
    FactoryTargets targets;
    ctx.fromBios = 0;
    ctx.gammaK = 0;
    FillIdentity(&ctx.gammaLut[0][0]);
    ValidateIcc(ctx);
    if (ctx.panelIndex != 0 && ctx.panelIndex != 1) return CCT_ERR_PANEL_INDEX;

    ReadFactoryData(ctx, tone, targets);
    DebugPrint("CCTAPI_ERRORCODE = %d\n", static_cast<int>(CctapiErrorCode()));
    InitGains(ctx, targets, tone, useFixedTarget);
    DebugMessage(L"VOK: Exit  CCT_Init()\n");
    return CctapiErrorCode();
}

}  // namespace quarnel
