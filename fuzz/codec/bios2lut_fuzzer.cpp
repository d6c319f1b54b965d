// SPDX-License-Identifier: MIT
// BIOS2LUT on arbitrary strings. The string sits in a buffer exactly as long
// as its first byte says, so any read past that end is caught.
//
// Input: one control byte (method and count), then the string.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "lut_checks.h"
#include "quarnel/cctapi.h"

namespace {

constexpr uint16_t kUntouched = 0xA5A5;

int32_t MethodOf(uint8_t control) {
    const bool anyMethod = (control & 0x80) != 0;
    return anyMethod ? static_cast<int32_t>(control & 0x03) - 1 : static_cast<int32_t>(control & 0x01);
}

int32_t CountOf(uint8_t control) { return (control & 0x40) != 0 ? quarnel::kLutEntries - 1 : quarnel::kLutEntries; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const uint8_t control = data[0];
    const std::size_t declared = std::max<std::size_t>(data[1], 1);
    std::vector<uint8_t> string(declared, 0);
    std::copy_n(data + 1, std::min(declared, size - 1), string.begin());

    quarnel::Lut16 lut;
    lut.fill(kUntouched);
    const int32_t status = BIOS2LUT(lut.data(), string.data(), CountOf(control), MethodOf(control));
    if (status == 0) {
        quarnel::fuzz::Require(quarnel::fuzz::IsDecodedLut(lut));
    } else {
        quarnel::fuzz::Require(status == -1);
        quarnel::fuzz::Require(std::all_of(lut.begin(), lut.end(), [](uint16_t v) { return v == kUntouched; }));
    }
    return 0;
}
