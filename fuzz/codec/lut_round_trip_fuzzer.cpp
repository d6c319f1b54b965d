// SPDX-License-Identifier: MIT
// LUT2BIOS then BIOS2LUT on LUTs built from the input. A storable LUT must
// come back identical; any other LUT must fail cleanly or read back as a
// valid rising LUT.
//
// Input: one control byte (how to build the LUT), then the bytes it is built
// from. Whether a LUT is storable is decided here from the format alone.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/lut16.h"
#include "lut_checks.h"
#include "quarnel/cctapi.h"

namespace {

using quarnel::kLutEntries;
using quarnel::kLutLevels;
using quarnel::kLutPlanes;
using quarnel::kLutStep;
using quarnel::Lut16;
using quarnel::LutIndex;

constexpr int kTop = kLutLevels - 1;
constexpr int kMaxListed = 7;
constexpr int kMaxCoded = 4;
constexpr int kMaxDataBits = 253 * 8;
constexpr int kMaxListBody = 254;
constexpr std::array<int, kMaxCoded + 1> kCodeLength{2, 1, 3, 4, 4};
constexpr std::size_t kOutSize = 1024;
constexpr uint8_t kUntouched = 0x5A;

class ByteSource {
public:
    ByteSource(const uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    uint8_t Next() { return size_ == 0 ? 0 : data_[at_++ % size_]; }
    uint16_t Next16() {
        const int high = Next();
        return static_cast<uint16_t>(high << 8 | Next());
    }

private:
    const uint8_t* data_;
    std::size_t size_;
    std::size_t at_ = 0;
};

// Mostly ones, as in a real gamma table, with steps 0..limit between.
int Difference(uint8_t byte, int limit) { return byte < 160 ? 1 : (byte - 160) % (limit + 1); }

// Moves the plane's differences until they add up to 255, keeping 0..limit.
void EndAtFullScale(std::array<int, kLutLevels>& d, int limit, int start) {
    int sum = 0;
    for (int i = 1; i < kLutLevels; ++i) sum += d[static_cast<std::size_t>(i)];
    for (int k = 0; sum != kTop; k = (k + 1) % kTop) {
        int& v = d[static_cast<std::size_t>(1 + (start + k) % kTop)];
        const int step = sum < kTop ? std::min(limit - v, kTop - sum) : -std::min(v, sum - kTop);
        v += step;
        sum += step;
    }
}

Lut16 StepLut(ByteSource& bytes, int limit, bool repair) {
    Lut16 lut{};
    for (int c = 0; c < kLutPlanes; ++c) {
        std::array<int, kLutLevels> d{};
        for (int i = 1; i < kLutLevels; ++i) d[static_cast<std::size_t>(i)] = Difference(bytes.Next(), limit);
        if (repair) EndAtFullScale(d, limit, bytes.Next());
        int value = 0;
        for (int i = 0; i < kLutLevels; ++i) {
            value = std::min(value + d[static_cast<std::size_t>(i)], kTop);
            lut[LutIndex(c, i)] = static_cast<uint16_t>(value * kLutStep);
        }
    }
    return lut;
}

Lut16 RawLut(ByteSource& bytes) {
    Lut16 lut{};
    for (auto& v : lut) v = bytes.Next16();
    return lut;
}

Lut16 BuildLut(uint8_t control, ByteSource& bytes) {
    const bool repair = (control & 0x04) == 0;
    Lut16 lut;
    switch (control & 0x03) {
        case 0:
            lut = RawLut(bytes);
            break;
        case 1:
            lut = StepLut(bytes, kMaxCoded, repair);
            break;
        default:
            lut = StepLut(bytes, kMaxListed, repair);
            break;
    }
    if ((control & 0x08) != 0) lut[bytes.Next16() % kLutEntries] = bytes.Next16();
    return lut;
}

// Storable: whole 8-bit steps of 0..7 from 0 to full scale, and the string
// that wins fits its length byte (Huffman data of at most 253 bytes, or a
// position-list body of at most 254 bytes when a step has no code).
bool IsStorable(const Lut16& lut) {
    int largest = 0, bits = 0, nonOnes = 0;
    for (int c = 0; c < kLutPlanes; ++c) {
        if (lut[LutIndex(c, 0)] != 0 || lut[LutIndex(c, kTop)] != kTop * kLutStep) return false;
        bits += kCodeLength[0];
        for (int i = 1; i < kLutLevels; ++i) {
            if (lut[LutIndex(c, i)] % kLutStep != 0) return false;
            const int step = (lut[LutIndex(c, i)] - lut[LutIndex(c, i - 1)]) / kLutStep;
            if (step < 0 || step > kMaxListed) return false;
            largest = std::max(largest, step);
            nonOnes += step != 1 ? 1 : 0;
            if (step <= kMaxCoded) bits += kCodeLength[static_cast<std::size_t>(step)];
        }
    }
    if (largest <= kMaxCoded) return bits <= kMaxDataBits;
    return largest * kLutPlanes + nonOnes <= kMaxListBody;  // groups 0, 2..largest
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    ByteSource bytes(data + 1, size - 1);
    const Lut16 lut = BuildLut(data[0], bytes);

    std::vector<uint8_t> out(kOutSize, kUntouched);
    uint32_t method = 99;
    const int32_t status = LUT2BIOS(lut.data(), 255, out.data(), static_cast<int32_t>(out.size()), &method);
    const bool storable = IsStorable(lut);
    if (status != 0) {
        quarnel::fuzz::Require(!storable && (status == -1 || status > 255));
        quarnel::fuzz::Require(std::all_of(out.begin(), out.end(), [](uint8_t v) { return v == kUntouched; }));
        return 0;
    }
    quarnel::fuzz::Require(method <= 1);

    // Read the string from a buffer as long as its first byte declares.
    std::vector<uint8_t> string(out.begin(), out.begin() + std::max<int>(out[0], 1));
    Lut16 back;
    back.fill(0);
    const int32_t read = BIOS2LUT(back.data(), string.data(), kLutEntries, static_cast<int32_t>(method));
    if (storable) {
        quarnel::fuzz::Require(read == 0 && back == lut);
    } else if (read == 0) {
        quarnel::fuzz::Require(quarnel::fuzz::IsDecodedLut(back));
    } else {
        quarnel::fuzz::Require(read == -1 && std::all_of(back.begin(), back.end(), [](uint16_t v) { return v == 0; }));
    }
    return 0;
}
