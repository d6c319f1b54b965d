// SPDX-License-Identifier: MIT
// Drives the whole colour interface as a caller would: the input picks the
// context's fields (every double may be a NaN, an infinity or huge), the
// calibration source and a sequence of CCTAPI requests and VX modes; the rest
// of the input is the calibration block, served both as the creator's file (in
// a memory-backed folder where there is one) and by the firmware. Every status
// must be one the interface documents.

#include <algorithm>
#include <bit>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>

#include "platform/acpi_device.h"
#include "platform/display_system.h"
#include "platform/trace_file.h"
#include "quarnel/cctapi.h"

namespace {

using namespace quarnel::platform;

class NoDisplays final : public DisplaySystem {
public:
    bool EnumDisplayDevice(const wchar_t*, uint32_t, DisplayDevice&) override { return false; }
    DeviceList OpenMonitorList() override { return 0; }
    bool EnumDevice(DeviceList, uint32_t) override { return false; }
    RegistryKey OpenDeviceKey(DeviceList) override { return 0; }
    void DestroyList(DeviceList) override {}
    uint32_t EnumValue(RegistryKey, uint32_t, wchar_t*, uint32_t&, uint8_t*, uint32_t&) override {
        return kErrorNoMoreItems;
    }
    void CloseKey(RegistryKey) override {}
    uint32_t LastError() override { return kErrorNoMoreItems; }
};

// Answers every method call with a result count of 1 and the block.
class BlockDevice final : public AcpiDevice {
public:
    const uint8_t* data = nullptr;
    std::size_t size = 0;

    DeviceHandle Open(const wchar_t*) override { return 1; }
    bool Control(DeviceHandle, uint32_t, const uint8_t*, uint32_t, uint8_t* reply, uint32_t capacity,
                 uint32_t& returned) override {
        const std::size_t body = std::min<std::size_t>(size, capacity - 4);
        reply[0] = 1, reply[1] = reply[2] = reply[3] = 0;
        std::copy_n(data, body, reply + 4);
        returned = static_cast<uint32_t>(4 + body);
        return true;
    }
    void Close(DeviceHandle) override {}
};

class Input {
public:
    Input(const uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    uint8_t Byte() { return at_ < size_ ? data_[at_++] : 0; }
    const uint8_t* Rest(std::size_t& size) const {
        size = size_ - at_;
        return data_ + at_;
    }

    // Mostly ordinary values (-32.768 to 32.767 in steps of 0.001), some
    // raw bit patterns, and the values that break arithmetic.
    double Number() {
        static constexpr double kInf = std::numeric_limits<double>::infinity();
        static constexpr double kSpecial[] = {std::numeric_limits<double>::quiet_NaN(),  kInf, -kInf, 1e300, -1e300,
                                              std::numeric_limits<double>::denorm_min(), -0.0, 1.0};
        const uint8_t kind = Byte();
        if (kind < 8) return kSpecial[kind];
        uint64_t bits = 0;
        for (int i = 0; i < (kind < 16 ? 8 : 2); ++i) bits = bits << 8 | Byte();
        return kind < 16 ? std::bit_cast<double>(bits) : (static_cast<double>(bits) - 32768.0) / 1000.0;
    }

private:
    const uint8_t* data_;
    std::size_t size_, at_ = 0;
};

const std::filesystem::path& Folder() {
    static const std::filesystem::path folder = [] {
        const std::filesystem::path shm = "/dev/shm";
        const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
        auto dir = (std::filesystem::is_directory(shm) ? shm : std::filesystem::temp_directory_path()) /
                   ("quarnel-api-fuzz-" + std::to_string(stamp));
        std::filesystem::create_directories(dir);
        return dir;
    }();
    return folder;
}

void Check(int32_t status) {
    if (status > 0 || status < -7) std::abort();  // not a documented status
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static NoDisplays displays;
    static ScopedDisplaySystem displayScope(displays);
    static BlockDevice device;
    static ScopedAcpiDevice deviceScope(device);
    static const std::string folder = Folder().string() + "/";
    static const std::string tracePath = folder + "CctTrace.txt";
    static ScopedTraceFilePath traceScope(tracePath);

    Input in(data, size);
    auto ctx = std::make_unique<CctContext>();
    const uint8_t setup = in.Byte();
    ctx->enableUserK = (setup & 3) % 3;
    ctx->panelIndex = (setup >> 2 & 3) - 1;
    ctx->lutApiType = static_cast<int8_t>(in.Byte());
    ctx->kalzenPath = (setup & 0x10) != 0 ? nullptr : folder.c_str();
    ctx->kalzenFilename = "panel.bin";
    ctx->interval = in.Number();
    for (auto& row : ctx->icc)
        for (double& v : row) v = in.Number();
    ctx->lutDcModeScale = in.Number();
    ctx->rdLevels = in.Number();
    ctx->rdIndex = in.Number();
    for (int i = 0; i < 3 * 256; ++i) ctx->oriLut[i / 256][i % 256] = static_cast<uint16_t>(i % 256 * 256);

    uint8_t calls[16][2];
    const int count = in.Byte() % 16;
    for (int i = 0; i < count; ++i) calls[i][0] = in.Byte(), calls[i][1] = in.Byte();
    std::size_t blockSize = 0;
    const uint8_t* block = in.Rest(blockSize);
    device.data = block;
    device.size = blockSize;
    if (std::FILE* file = std::fopen((folder + "panel.bin").c_str(), "wb")) {
        std::fwrite(block, 1, blockSize, file);
        std::fclose(file);
    }
    if ((setup & 0x20) != 0) {
        if (std::FILE* trace = std::fopen(tracePath.c_str(), "w")) std::fclose(trace);
    } else {
        std::remove(tracePath.c_str());
    }

    uint16_t curve[3][256];  // the caller's tone curve: the block's bytes, any values at all
    for (std::size_t i = 0; i < 3 * 256; ++i)
        curve[i / 256][i % 256] = blockSize < 2
                                      ? static_cast<uint16_t>(i % 256 * 256)
                                      : static_cast<uint16_t>(block[i % blockSize] << 8 | block[(i + 1) % blockSize]);
    static constexpr uint32_t kCodes[16] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 1, 2, 9999, 1000, 0x102, 9, 0xFFFFFFFF};
    for (int i = 0; i < count; ++i) {
        const uint8_t kind = calls[i][0], code = calls[i][1];
        if ((kind & 1) != 0)
            Check(CCTAPI_VX(static_cast<int8_t>(code), ctx.get(), &curve[0][0]));
        else
            Check(CCTAPI(kCodes[code & 15] | (code & 0xC0u), ctx.get()));
    }
    return 0;
}
