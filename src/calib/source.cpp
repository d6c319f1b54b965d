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
#include "quarnel/cctapi.h"

namespace quarnel {
namespace {

constexpr int32_t kUserFile = 1;
constexpr int32_t kReadAgain = -1;

// The caller supplies the separator: the folder and the name are joined as they are.
std::optional<std::string> KalzenPath(const char* kalzenPath, const char* kalzenFilename) {
    if (kalzenPath == nullptr || kalzenFilename == nullptr) return std::nullopt;
    return std::string(kalzenPath) + kalzenFilename;
}

// The block a successful probe of the user file has already read, so that
// the one open serves the probe, the record and the read.
using ProbedBlock = std::optional<std::vector<uint8_t>>;

// A fresh, cleared block: a short file or a failed firmware read then
// leaves zeros behind, never stale bytes.
void FreshBlock(BiosData& data) { data.raw.assign(kBlockSize, 0); }

// Reads the file into the cleared block `raw`; false when it does not open.
bool ReadBlockFile(const std::string& path, std::vector<uint8_t>& raw) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return false;
    const std::size_t ignored = std::fread(raw.data(), 1, raw.size(), file);
    static_cast<void>(ignored);  // a short file is read as far as it goes
    std::fclose(file);
    return true;
}

bool ReadFile(BiosData& data, const std::optional<std::string>& path, ProbedBlock& probed) {
    if (probed) {
        data.raw.swap(*probed);
        probed.reset();
    } else if (!path || !ReadBlockFile(*path, data.raw)) {
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
    data.path = KalzenPath(kalzenPath, kalzenFilename);
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
    if (data.version >= 5 && !CheckToneCrc(data)) Reject(data, kBiosToneCrcError, enableUserK);
}

// A file that opens is read here once, and the record keeps its block.
std::unique_ptr<BiosData> ProbeUserFile(const char* kalzenPath, const char* kalzenFilename) {
    const std::optional<std::string> path = KalzenPath(kalzenPath, kalzenFilename);
    if (!path) {
        DebugMessage(L"VOK: Kalzen Path catch\n");
        CctapiErrorCode() = CCT_ERR_FILE_NOT_OPENED;
        return std::make_unique<BiosData>();
    }
    std::vector<uint8_t> block(kBlockSize, 0);
    if (!ReadBlockFile(*path, block)) {
        CctapiErrorCode() = CCT_ERR_FILE_NOT_OPENED;
        DebugMessage(L"VOK: Kalzen Path -3\n");
        return std::make_unique<BiosData>();
    }
    auto data = CCTLoadBIOS(path->c_str(), std::move(block));
    DebugMessage(L"VOK: Kalzen Path OK\n");
    return data;
}

// Reads the file named by folder and name, joined as they are, into `block`
// as far as it goes; leaves `block` as it is when the file does not open.
void ReadJoinedFile(const char* folder, const char* name, std::array<uint8_t, kBlockSize>& block) {
    constexpr std::size_t kPathBuffer = 4096;
    char joined[kPathBuffer];
    const std::size_t folderLength = std::strlen(folder);
    const std::size_t nameLength = std::strlen(name);
    std::string longPath;
    const char* path = joined;
    if (folderLength + nameLength < kPathBuffer) {
        std::memcpy(joined, folder, folderLength);
        std::memcpy(joined + folderLength, name, nameLength + 1);
    } else {
        longPath = std::string(folder) + name;
        path = longPath.c_str();
    }
    std::FILE* file = std::fopen(path, "rb");
    if (file == nullptr) return;
    const std::size_t ignored = std::fread(block.data(), 1, block.size(), file);
    static_cast<void>(ignored);
    std::fclose(file);
}

}  // namespace

std::unique_ptr<BiosData> CCTLoadBIOS(const char* path, ProbedBlock probed) {
    if (path == nullptr) {
        DebugPrint("BIOS Raw file is not valid.\n");
        std::exit(0);  // a record without a path is not worth going on for
    }
    DebugPrint("CCTLoadBIOS = %s \n", path);
    auto data = std::make_unique<BiosData>();
    if (probed) {
        data->path = path;
        data->probedBlock = std::move(probed);
    }
    return data;
}

std::unique_ptr<BiosData> Open(int32_t enableUserK, const char* kalzenPath, const char* kalzenFilename,
                               int32_t panelIndex) {
    DebugMessage(L"VOK: Enter Open()\n");
    std::unique_ptr<BiosData> data =
        enableUserK == kUserFile ? ProbeUserFile(kalzenPath, kalzenFilename) : std::make_unique<BiosData>();
    if (GetData(*data, enableUserK, kalzenPath, kalzenFilename, panelIndex) == kReadAgain &&
        GetData(*data, enableUserK, kalzenPath, kalzenFilename, panelIndex) == kReadAgain)
        return nullptr;
    if (data->BiosDataStatus != kBiosOk) return nullptr;
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
    std::array<uint8_t, kBlockSize> block{};  // a short or unread source leaves zeros
    if (source.enableUserK != kUserFile) {
        int32_t count = 0;
        static_cast<void>(ReadDataBlock(&count, block.data(), source.panelIndex));
    } else if (source.kalzenPath == nullptr || source.kalzenFilename == nullptr) {
        DebugPrint("GetBIOS_Data path = %s \n", "");
    } else {
        DebugPrint("GetBIOS_Data path = %s%s \n", source.kalzenPath, source.kalzenFilename);
        ReadJoinedFile(source.kalzenPath, source.kalzenFilename, block);
    }
    flag297 = block[kBlockStepByte];
    return 0;
}

void Close(std::unique_ptr<BiosData> data) { data.reset(); }

}  // namespace quarnel
