// SPDX-License-Identifier: MIT
#include "calib/source.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "calib/block_parser.h"
#include "calib/edid.h"
#include "calib/error_code.h"
#include "calib/firmware_reader.h"
#include "diag/debug.h"
#include "facts/block_layout.h"
#include "quarnel/cctapi.h"

namespace quarnel {
namespace {

constexpr int32_t kUserFile = 1;
constexpr int32_t kReadAgain = -1;

using Block = std::array<uint8_t, kBlockSize>;

// The caller supplies the separator: the folder and the name are joined as they are.
void SetKalzenPath(std::optional<FilePath>& path, const char* kalzenPath, const char* kalzenFilename) {
    path.reset();
    if (kalzenPath != nullptr && kalzenFilename != nullptr) path.emplace(kalzenPath, kalzenFilename);
}

// The block a successful probe of the user file has already read, so that
// the one open serves the probe, the record and the read.
using ProbedBlock = std::optional<Block>;

// A fresh, cleared block: a short file or a failed firmware read then
// leaves zeros behind, never stale bytes.
void FreshBlock(BiosData& data) { data.raw.fill(0); }

// Reads the file into the cleared block `raw`; false when it does not open.
bool ReadBlockFile(const char* path, Block& raw) {
    std::FILE* file = std::fopen(path, "rb");
    if (file == nullptr) return false;
    const std::size_t ignored = std::fread(raw.data(), 1, raw.size(), file);
    static_cast<void>(ignored);  // a short file is read as far as it goes
    std::fclose(file);
    return true;
}

bool ReadFile(BiosData& data, const std::optional<FilePath>& path, ProbedBlock& probed) {
    if (probed) {
        data.raw = *probed;
        probed.reset();
    } else if (!path || !ReadBlockFile(path->c_str(), data.raw)) {
        return false;
    }
    data.length = kBlockSize;
    return true;
}

void ReadFirmware(BiosData& data, int32_t panelIndex) {
    data.cursor = 0;
    int32_t count = 0;
    // A failed read leaves the cleared block, which the format checks then reject.
    static_cast<void>(ReadDataBlock(&count, data.raw.data(), panelIndex));
    data.length = kBlockSize;
    data.BiosDataStatus = kBiosOk;
}

void CollectEdidBlocks(BiosData& data) {
    DebugMessage(L"VOK: Start GetEdidData()\n");
    // A read again replaces the blocks of the previous one rather than adding to them.
    data.edidBlocks.clear();
    data.edidCount = 0;
    GetEdidData(nullptr, data.edidCount);
    if (data.edidCount > 0) {
        data.edidBlocks.assign(static_cast<std::size_t>(data.edidCount), EdidBlock{});
        GetEdidData(data.edidBlocks.data(), data.edidCount);
    }
    DebugMessage(L"VOK: End GetEdidData()\n");
}

void ReadUserFile(BiosData& data, const char* kalzenPath, const char* kalzenFilename, ProbedBlock& probed) {
    SetKalzenPath(data.path, kalzenPath, kalzenFilename);
    DebugPrint("path = %s \n", data.path ? data.path->c_str() : "");
    data.cursor = 0;
    if (ReadFile(data, data.path, probed)) {
        data.BiosDataStatus = kBiosOk;
    } else {
        CctapiErrorCode() = CCT_ERR_FILE_NOT_OPENED;
        data.BiosDataStatus = kBiosFileNotOpened;
    }
    DebugMessage(L"VOK: End Get Data From File()\n");
}

void Reject(BiosData& data, int32_t status, int32_t enableUserK) {
    data.BiosDataStatus = status;
    if (enableUserK == kUserFile) CctapiErrorCode() = CCT_ERR_FILE_INVALID;
}

void CheckBlock(BiosData& data, int32_t enableUserK) {
    if (!ParseHeader(data)) {
        Reject(data, kBiosBadBlock, enableUserK);
        return;
    }
    if (data.BiosDataStatus != kBiosOk) return;  // bad magic
    if (!CheckHeaderCrc(data)) {
        DebugPrint("CRCCheck Error\n");
        Reject(data, kBiosHeaderCrcError, enableUserK);
    }
    if (facts::Carries(facts::kToneCrc.stored, data.version) && !CheckToneCrc(data))
        Reject(data, kBiosToneCrcError, enableUserK);
}

// A file that opens is read here once, and the record keeps its block.
void ProbeUserFile(const char* kalzenPath, const char* kalzenFilename, BiosData& data) {
    std::optional<FilePath> path;
    SetKalzenPath(path, kalzenPath, kalzenFilename);
    if (!path) {
        DebugMessage(L"VOK: Kalzen Path catch\n");
        CctapiErrorCode() = CCT_ERR_FILE_NOT_OPENED;
        return;
    }
    ProbedBlock block(std::in_place);  // cleared: a short file leaves zeros behind
    if (!ReadBlockFile(path->c_str(), *block)) {
        CctapiErrorCode() = CCT_ERR_FILE_NOT_OPENED;
        DebugMessage(L"VOK: Kalzen Path -3\n");
        return;
    }
    CCTLoadBIOS(path->c_str(), block, data);
    DebugMessage(L"VOK: Kalzen Path OK\n");
}

}  // namespace

void CCTLoadBIOS(const char* path, const ProbedBlock& probed, BiosData& data) {
    if (path == nullptr) {
        DebugPrint("BIOS Raw file is not valid.\n");
        std::exit(0);  // a record without a path is not worth going on for
    }
    DebugPrint("CCTLoadBIOS = %s \n", path);
    if (probed) {
        data.path.emplace(path, "");
        data.probedBlock = probed;
    }
}

// The record lives in the caller's frame: nothing is allocated for it.
std::optional<BiosData> Open(int32_t enableUserK, const char* kalzenPath, const char* kalzenFilename,
                             int32_t panelIndex) {
    DebugMessage(L"VOK: Enter Open()\n");
    std::optional<BiosData> data(std::in_place);
    if (enableUserK == kUserFile) ProbeUserFile(kalzenPath, kalzenFilename, *data);
    if (GetData(*data, enableUserK, kalzenPath, kalzenFilename, panelIndex) == kReadAgain &&
        GetData(*data, enableUserK, kalzenPath, kalzenFilename, panelIndex) == kReadAgain)
        data.reset();
    else if (data->BiosDataStatus != kBiosOk)
        data.reset();
    else
        DebugMessage(L"VOK: Exit Open()\n");
    return data;
}

// Any non-zero enableUserK reads the file here, where Open probes it only for 1.
int32_t GetData(BiosData& data, int32_t enableUserK, const char* kalzenPath, const char* kalzenFilename,
                int32_t panelIndex) {
    DebugMessage(L"VOK: Enter GetData()\n");
    FreshBlock(data);
    CollectEdidBlocks(data);
    if (enableUserK != 0) {
        ReadUserFile(data, kalzenPath, kalzenFilename, data.probedBlock);
    } else {
        ReadFirmware(data, panelIndex);
    }
    DebugPrint("this->BiosDataStatus  = %d  \n", data.BiosDataStatus);
    if (data.BiosDataStatus != kBiosOk) return kReadAgain;
    DebugPrint("ReadResult  = %d \n", 0);
    CheckBlock(data, enableUserK);
    return 0;
}

// Called by every LUT request of a version-7 panel, so it reads into a block
// on the stack and joins the path there: nothing is allocated unless the
// path outgrows the buffer.
int32_t GetBIOS_Data(uint8_t& flag297, const CalibrationSource& source) {
    // Only the step byte is read back: a short or unread source leaves it 0.
    Block block;
    block[kBlockStepByte] = 0;
    if (source.enableUserK != kUserFile) {
        int32_t count = 0;
        static_cast<void>(ReadDataBlock(&count, block.data(), source.panelIndex));
    } else if (source.kalzenPath == nullptr || source.kalzenFilename == nullptr) {
        DebugPrint("GetBIOS_Data path = %s \n", "");
    } else {
        const FilePath path(source.kalzenPath, source.kalzenFilename);
        DebugPrint("GetBIOS_Data path = %s \n", path.c_str());
        static_cast<void>(ReadBlockFile(path.c_str(), block));
    }
    flag297 = block[kBlockStepByte];
    return 0;
}

void Close(std::optional<BiosData>& data) { data.reset(); }

}  // namespace quarnel
