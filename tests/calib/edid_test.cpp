// SPDX-License-Identifier: MIT
#include "calib/edid.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "calib/fake_display_system.h"

namespace quarnel {
namespace {

using test::FakeDisplaySystem;

std::vector<uint8_t> Edid(uint8_t seed, std::size_t size = 128) {
    std::vector<uint8_t> bytes(size);
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<uint8_t>(seed + i);
    return bytes;
}

EdidBlock Padded(const std::vector<uint8_t>& bytes) {
    EdidBlock block{};
    std::copy(bytes.begin(), bytes.end(), block.begin());
    return block;
}

// Counts, then fills, as a calibration read does.
std::vector<EdidBlock> Collect(FakeDisplaySystem& system, int32_t& count) {
    platform::ScopedDisplaySystem scope(system);
    count = 0;
    GetEdidData(nullptr, count);
    std::vector<EdidBlock> blocks(static_cast<std::size_t>(std::max(count, 0)), EdidBlock{});
    if (count > 0) GetEdidData(blocks.data(), count);
    return blocks;
}

TEST(GetEdidData, CountsEveryOpenedKeyAndFillsInDeviceOrder) {
    FakeDisplaySystem system = FakeDisplaySystem::WithMonitors(1);
    system.devices = {FakeDisplaySystem::WithEdid(Edid(1)), {}, {false, {}}, FakeDisplaySystem::WithEdid(Edid(50))};
    int32_t count = 0;
    // The unopened key is not counted; no EDID is counted and left zero; device 3 lies past the count.
    EXPECT_EQ(Collect(system, count), (std::vector<EdidBlock>{Padded(Edid(1)), {}, {}}));
    EXPECT_EQ(count, 3);
    EXPECT_EQ(system.keysOpened, system.keysClosed);
    EXPECT_EQ(system.listsOpened, system.listsDestroyed);
}

TEST(GetEdidData, EveryActiveMonitorWalksTheClassAgainUntilTheLastDeviceHasAnEdid) {
    const std::tuple<int, bool, int32_t, int> cases[] = {                   // monitors, last has EDID, count, walks
                                                         {2, false, 6, 2},  // counted twice over
                                                         {2, true, 3, 1},
                                                         {1, false, 3, 1},
                                                         {3, false, 9, 3}};
    for (const auto& [monitors, lastHasEdid, expected, walks] : cases) {
        FakeDisplaySystem system = FakeDisplaySystem::WithMonitors(monitors);
        system.devices = {FakeDisplaySystem::WithEdid(Edid(1)), FakeDisplaySystem::WithEdid(Edid(2)),
                          lastHasEdid ? FakeDisplaySystem::WithEdid(Edid(3)) : FakeDisplaySystem::Device{}};
        platform::ScopedDisplaySystem scope(system);
        int32_t count = 0;
        GetEdidData(nullptr, count);
        EXPECT_EQ(std::pair(count, system.listsOpened), std::pair(expected, walks)) << monitors << lastHasEdid;
    }
}

TEST(GetEdidData, SkipsInactiveAndMirroringMonitors) {
    FakeDisplaySystem system;
    system.adapters = {
        {L"A0", {{L"MONITOR\\X\\0", 0}, {L"MONITOR\\Y\\0", platform::kDisplayActive | platform::kDisplayMirroring}}},
        {L"A1", {{L"MONITOR\\Z\\0", platform::kDisplayActive | 0x4}}}};
    system.devices = {FakeDisplaySystem::Device{}};
    int32_t count = 0;
    Collect(system, count);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(system.listsOpened, 2);  // the monitor of A1, once per pass
}

TEST(GetEdidData, NothingToCountLeavesTheCountAlone) {
    FakeDisplaySystem none;  // no adapter at all
    platform::ScopedDisplaySystem scope(none);
    int32_t count = 4;
    EXPECT_EQ(GetEdidData(nullptr, count), 0);
    EXPECT_EQ(count, 4);
    FakeDisplaySystem noList = FakeDisplaySystem::WithMonitors(2);
    noList.listResult = 0;
    Collect(noList, count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(noList.listsOpened, 1);  // an empty walk ends the adapter's monitors
}

TEST(GetEdidData, CountsAndFillsTheSystemsOwnDisplays) {
    int32_t count = 0;
    EXPECT_EQ(GetEdidData(nullptr, count), 0);
    std::vector<EdidBlock> blocks(static_cast<std::size_t>(std::max(count, 0)), EdidBlock{});
    if (count > 0) GetEdidData(blocks.data(), count);
    EXPECT_EQ(count, static_cast<int32_t>(blocks.size()));
}

TEST(FindEdidValue, TakesOnlyAnExactEdidThatFits) {
    const std::vector<uint8_t> full = Edid(9, 1024);
    const std::tuple<const char*, std::vector<FakeDisplaySystem::Value>, EdidBlock> cases[] = {
        // all zero: none
        {"exact", {{L"EDID", Edid(5)}}, Padded(Edid(5))},
        {"other case", {{L"edid", Edid(5)}}, {}},
        {"longer name", {{L"EDID2", Edid(5)}}, {}},
        {"full size", {{L"EDID", full}}, Padded(full)},
        {"too long", {{L"EDID", Edid(9, 1025)}}, {}},
        // The tail of a short EDID is what the data buffer held before.
        {"after another",
         {{L"Name0", std::vector<uint8_t>(6, 0xAA)}, {L"EDID", {1, 2}}},
         Padded({1, 2, 0xAA, 0xAA, 0xAA, 0xAA})},
        // Lengths shrink with every value: a longer name or more data then no longer fit.
        {"after a short name", {{L"A", {1}}, {L"EDID", {2}}}, {}},
        {"after little data", {{L"Named", {1}}, {L"EDID", {2, 3}}}, {}},
    };
    for (const auto& [name, values, expected] : cases) {
        FakeDisplaySystem system;
        system.devices = {{true, values}};
        platform::ScopedDisplaySystem scope(system);
        EdidBlock out{};
        ASSERT_TRUE(system.EnumDevice(1, 0));
        const platform::RegistryKey key = system.OpenDeviceKey(1);
        const bool found = expected != EdidBlock{};
        EXPECT_EQ(std::pair(FindEdidValue(key, out.data()), FindEdidValue(key, nullptr)), std::pair(found, found))
            << name;
        EXPECT_EQ(out, expected) << name;
    }
}

TEST(MonitorHardwareId, TakesTheTextBetweenTheFirstTwoSeparators) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"MONITOR\\ABC1234\\{4d36e96e-e325-11ce-bfc1-08002be10318}\\0001", L"ABC1234"},
        {L"MONITOR\\A\\0", L"A"},
        {L"MONITOR\\\\0", L""},  // the separator at 8 is not searched for
        {L"MONITOR\\ABC", L""},
        {L"MONITOR\\", L""},
        {L"", L""},
    };
    for (const auto& [id, hardware] : cases) EXPECT_EQ(MonitorHardwareId(id), hardware) << id;
}

}  // namespace
}  // namespace quarnel
