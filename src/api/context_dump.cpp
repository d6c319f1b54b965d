// SPDX-License-Identifier: MIT
#include "api/context_dump.h"

#include <cstdarg>
#include <cstdio>
#include <ctime>

#include "diag/trace.h"
#include "diag/version.h"

namespace quarnel {
namespace {

constexpr const char* kRule = "==========================================\n";

#if defined(__GNUC__)
__attribute__((format(printf, 2, 3)))
#endif
int TraceWrite(std::FILE* file, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int result = std::vfprintf(file, format, args);
    va_end(args);
    return result;
}

void WriteLut16Lines(std::FILE* file, const uint16_t (*lut)[256], const char* line) {
    for (int i = 0; i < 256; ++i) TraceWrite(file, line, i, lut[0][i], lut[1][i], lut[2][i]);
}

void WriteGain(std::FILE* file, const char* label, const double* gain) {
    TraceWrite(file, "%s %1.5f %1.5f %1.5f\n", label, gain[0], gain[1], gain[2]);
}

void WriteMatrix(std::FILE* file, const char* title, const double (*m)[3]) {
    TraceWrite(file, "%s\n", title);
    for (int row = 0; row < 4; ++row) TraceWrite(file, "%3.3f %3.3f %3.3f\n", m[row][0], m[row][1], m[row][2]);
}

void WriteFloatTriples(std::FILE* file, const float (*values)[3]) {
    for (int j = 0; j < 1024; ++j) {
        TraceWrite(file, "[%3d] %f %f %f\n", j, static_cast<double>(values[j][0]), static_cast<double>(values[j][1]),
                   static_cast<double>(values[j][2]));
    }
}

void WriteHeader(std::FILE* file, const CctContext* ctx, const char* title) {
    const std::time_t now = std::time(nullptr);
    const char* when = std::ctime(&now);
    TraceWrite(file, "%s", kRule);
    TraceWrite(file, "%s %s", title, when != nullptr ? when : "\n");
    TraceWrite(file, "Version: %X.%X.%X \n", kInterfaceMajor, kInterfaceMinor, kInterfaceBuild);
    TraceWrite(file, "CCTWarning: %d\n", ctx->cctWarning);
    WriteMatrix(file, "ICC:", ctx->icc);
    WriteMatrix(file, "BIOS:", ctx->bios);
    WriteGain(file, "Nor:", ctx->gainNormal);
    WriteGain(file, "W:  ", ctx->gainWarm);
    WriteGain(file, "C:  ", ctx->gainCold);
    WriteGain(file, "RdS:", ctx->gainReadStrong);
    WriteGain(file, "RdW:", ctx->gainReadWeak);
}

void WriteSettings(std::FILE* file, const CctContext* ctx) {
    TraceWrite(file, "From BIOS: %d\n", ctx->fromBios);
    TraceWrite(file, "BIOS Ver: %d\n", ctx->biosVer);
    TraceWrite(file, "GammaK: %d\n", ctx->gammaK);
    TraceWrite(file, "RDLevels: %f\n", ctx->rdLevels);
    TraceWrite(file, "RDIndex: %f\n", ctx->rdIndex);
    TraceWrite(file, "ICC Type: %d\n", ctx->iccType);
    TraceWrite(file, "Enable User K: %d\n", ctx->enableUserK);
    if (ctx->enableUserK == 1) {
        TraceWrite(file, "Kalzen Path: %s\n", ctx->kalzenPath != nullptr ? ctx->kalzenPath : "(null)");
        TraceWrite(file, "Kalzen Filename: %s\n", ctx->kalzenFilename != nullptr ? ctx->kalzenFilename : "(null)");
    }
    TraceWrite(file, "Panel Index: %d\n", ctx->panelIndex);
    TraceWrite(file, "Lut Api Type: %d\n", ctx->lutApiType);
    TraceWrite(file, "Dc Mode Scale: %f\n", ctx->lutDcModeScale);
}

void WriteTables(std::FILE* file, const CctContext* ctx, const uint16_t* vxInput) {
    const char* section = "%s  interval:%f \n";
    TraceWrite(file, section, "Ori", ctx->interval);
    WriteLut16Lines(file, ctx->oriLut, "[%3d] %3d %3d %3d\n");
    if (ctx->gammaK != 0) {
        TraceWrite(file, "%s  \n", "Gamma");
        WriteLut16Lines(file, ctx->gammaLut, "[%3d]: %d %d %d\n");
    }
    TraceWrite(file, section, "Out", ctx->interval);
    WriteLut16Lines(file, ctx->outLut, "[%3d] %3d %3d %3d\n");
    TraceWrite(file, section, "Out Intel IGCL", ctx->interval);
    for (int i = 0; i < 256; ++i) {
        TraceWrite(file, "[%3d] %f %f %f\n", i, ctx->outIgcl[0][i], ctx->outIgcl[1][i], ctx->outIgcl[2][i]);
    }
    TraceWrite(file, section, "Out Nvidia PreGamma", ctx->interval);
    WriteFloatTriples(file, ctx->outNvPreGamma);
    TraceWrite(file, section, "Out Nvidia PostGamma", ctx->interval);
    WriteFloatTriples(file, ctx->outNvPostGamma);
    if (vxInput != nullptr) {
        TraceWrite(file, "VX_Input  \n");
        for (int i = 0; i < 256; ++i) {
            TraceWrite(file, "[%3d] %3d %3d %3d\n", i, vxInput[i], vxInput[256 + i], vxInput[512 + i]);
        }
    }
}

}  // namespace

void DumpLut(const CctContext* ctx, const char* title) {
    const TraceTarget trace;
    std::FILE* file = trace.file();
    if (file == nullptr) return;
    TraceWrite(file, "%s", kRule);
    TraceWrite(file, "%s\n", title);
    WriteLut16Lines(file, ctx->outLut, "[%3d] %3d %3d %3d\n");
    TraceWrite(file, "\n");
}

void DumpContext(const CctContext* ctx, const char* title, const uint16_t* vxInput) {
    const TraceTarget trace;
    std::FILE* file = trace.file();
    if (file == nullptr) return;
    WriteHeader(file, ctx, title);
    WriteSettings(file, ctx);
    WriteTables(file, ctx, vxInput);
}

}  // namespace quarnel
