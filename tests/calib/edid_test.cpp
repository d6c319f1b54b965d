// SPDX-License-Identifier: MIT
#include "calib/edid.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

#include "platform/fake_display_system.h"
#include "support/golden.h"

namespace quarnel {
namespace {

using test::FakeDisplaySystem;
using test::Row;

std::vector<uint8_t> Edid(uint8_t seed, std::size_t size = 128) {
    std::vector<uint8_t> bytes(size);
    std::iota(bytes.begin(), bytes.end(), seed);
    return bytes;
}

// The first bytes, the sum and the length up to the last non-zero byte of a block.
std::string Summary(const EdidBlock& b) {
    const auto end = std::find_if(b.rbegin(), b.rend(), [](uint8_t v) { return v != 0; });
    return Row(+b[0], +b[1], +b[2], +b[3], +b[4], +b[5], "sum", std::accumulate(b.begin(), b.end(), 0), "length",
               b.rend() - end);
}

// Counts, then fills, as a calibration read does.
std::string Collect(const std::string& title, FakeDisplaySystem system, int32_t count = 0) {
    platform::ScopedDisplaySystem scope(system);
    const int32_t result = GetEdidData(nullptr, count);
    std::vector<EdidBlock> blocks(static_cast<std::size_t>(std::max(count, 0)), EdidBlock{});
    if (count > 0) GetEdidData(blocks.data(), count);
    std::string text = Row("==", title, result, "count", count, "walks", system.listsOpened, "left open",
                           system.keysOpened - system.keysClosed, system.listsOpened - system.listsDestroyed);
    for (const EdidBlock& b : blocks) text += Summary(b);
    return text;
}

TEST(GetEdidData, CountsAndFillsEveryActiveMonitorsWalk) {
    using FDS = FakeDisplaySystem;
    std::string text;
    FDS system = FDS::WithMonitors(1);  // the unopened key is not counted; an empty one is, left zero
    system.devices = {FDS::WithEdid(Edid(1)), {}, {false, {}}, FDS::WithEdid(Edid(50))};
    text += Collect("device order", system);
    for (int monitors : {1, 2, 3})  // every active monitor walks again until the last device has an EDID
        for (bool lastHasEdid : {false, true}) {
            system = FDS::WithMonitors(monitors);
            system.devices = {FDS::WithEdid(Edid(1)), FDS::WithEdid(Edid(2)),
                              lastHasEdid ? FDS::WithEdid(Edid(3)) : FDS::Device{}};
            text += Collect("monitors " + std::to_string(monitors) + " " + std::to_string(lastHasEdid), system);
        }
    system = {};
    system.adapters = {
        {L"A0", {{L"MONITOR\\X\\0", 0}, {L"MONITOR\\Y\\0", platform::kDisplayActive | platform::kDisplayMirroring}}},
        {L"A1", {{L"MONITOR\\Z\\0", platform::kDisplayActive | 0x4}}}};
    system.devices = {FDS::Device{}};
    text += Collect("inactive and mirroring skipped", system);
    text += Collect("no adapter leaves the count alone", FDS{}, 4);
    system = FDS::WithMonitors(2);
    system.listResult = 0;
    text += Collect("no device list", system);
    test::ExpectGolden("edid.txt", text);
    int32_t count = 0;  // the system's own displays
    EXPECT_EQ(GetEdidData(nullptr, count), 0);
}

TEST(FindEdidValue, TakesOnlyAnExactEdidThatFits) {
    const std::pair<const char*, std::vector<FakeDisplaySystem::Value>> cases[] = {
        {"exact", {{L"EDID", Edid(5)}}},
        {"other case", {{L"edid", Edid(5)}}},
        {"longer name", {{L"EDID2", Edid(5)}}},
        {"full size", {{L"EDID", Edid(9, 1024)}}},
        {"too long", {{L"EDID", Edid(9, 1025)}}},
        {"after another", {{L"Name0", std::vector<uint8_t>(6, 0xAA)}, {L"EDID", {1, 2}}}},  // keeps the tail
        {"after a short name", {{L"A", {1}}, {L"EDID", {2}}}},  // lengths shrink with every value
        {"after little data", {{L"Named", {1}}, {L"EDID", {2, 3}}}},
    };
    std::string text;
    for (const auto& [name, values] : cases) {
        FakeDisplaySystem system;
        system.devices = {{true, values}};
        platform::ScopedDisplaySystem scope(system);
        EdidBlock out{};
        ASSERT_TRUE(system.EnumDevice(1, 0));
        const platform::RegistryKey key = system.OpenDeviceKey(1);
        text += Row("==", name, FindEdidValue(key, out.data()), FindEdidValue(key, nullptr));
        text += Summary(out);
    }
    test::ExpectGolden("edid_value.txt", text);
}

TEST(MonitorHardwareId, TakesTheTextBetweenTheFirstTwoSeparators) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"MONITOR\\ABC1234\\{4d36e96e-e325-11ce-bfc1-08002be10318}\\0001", L"ABC1234"},
        {L"MONITOR\\A\\0", L"A"},
        {L"MONITOR\\\\0", L""},  // the separator at 8 is not searched for
        {L"MONITOR\\ABC", L""},
        {L"", L""},
    };
    for (const auto& [id, hardware] : cases) EXPECT_EQ(MonitorHardwareId(id), hardware) << id;
}

}  // namespace
}  // namespace quarnel
