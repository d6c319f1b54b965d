// SPDX-License-Identifier: MIT
// Feeds arbitrary bytes, of any length, as the firmware's calibration block
// through the whole calibration read: parse, CRC checks, tone model and
// gamma string. The block arrives from a device held in memory, so no input
// touches the file system.

#include <cstddef>
#include <cstdint>
#include <memory>

#include "calib/bios_info.h"
#include "fake_platform.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static quarnel::fuzz::NoDisplays displays;
    static quarnel::platform::ScopedDisplaySystem displayScope(displays);
    static quarnel::fuzz::BlockDevice device;
    static quarnel::platform::ScopedAcpiDevice deviceScope(device);
    device.data = data;
    device.size = size;

    quarnel::Lut16 gammaLut{};
    auto factory = std::make_unique<quarnel::FactoryData>();
    factory->gammaLut = gammaLut.data();
    quarnel::ToneModel tone;
    quarnel::FactoryTargets targets;
    quarnel::GetBIOSInfo({}, *factory, tone, targets);
    return 0;
}
