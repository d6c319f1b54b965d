#include "calib/edid.h"

#include <gtest/gtest.h>

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

// Counts, then fills, as a calibration read does.
std::vector<EdidBlock> Collect(FakeDisplaySystem& system, int32_t& count) {
    platform::ScopedDisplaySystem scope(system);
    count = 0;
    GetEdidData(nullptr, count);
    std::vector<EdidBlock> blocks(static_cast<std::size_t>(std::max(count, 0)), EdidBlock{});
    if (count > 0) GetEdidData(blocks.data(), count);
    return blocks;
}

EdidBlock Padded(const std::vector<uint8_t>& bytes) {
    EdidBlock block{};
    std::copy(bytes.begin(), bytes.end(), block.begin());
    return block;
}

TEST(GetEdidData, CountsEveryOpenedKeyAndFillsInDeviceOrder) {
    FakeDisplaySystem system = FakeDisplaySystem::WithMonitors(1);
    system.devices = {FakeDisplaySystem::WithEdid(Edid(1)), {true, {}}, {false, {}},
                      FakeDisplaySystem::WithEdid(Edid(50))};
    int32_t count = 0;
    const std::vector<EdidBlock> blocks = Collect(system, count);
    EXPECT_EQ(count, 3);  // the device whose key did not open is not counted
    ASSERT_EQ(blocks.size(), 3u);
    EXPECT_EQ(blocks[0], Padded(Edid(1)));
    EXPECT_EQ(blocks[1], EdidBlock{});  // no EDID: counted, left zero
    EXPECT_EQ(blocks[2], EdidBlock{});  // device 3 lies past the count
    EXPECT_EQ(system.keysOpened, system.keysClosed);
    EXPECT_EQ(system.listsOpened, system.listsDestroyed);
}

TEST(GetEdidData, EveryActiveMonitorWalksTheClassAgainUntilTheLastDeviceHasAnEdid) {
    struct Case {
        int monitors;
        bool lastHasEdid;
        int32_t count;
        int walks;
    } cases[] = {
        {2, false, 6, 2},  // counted twice over
        {2, true, 3, 1},
        {1, false, 3, 1},
        {3, false, 9, 3},
    };
    for (const auto& tc : cases) {
        FakeDisplaySystem system = FakeDisplaySystem::WithMonitors(tc.monitors);
        system.devices = {FakeDisplaySystem::WithEdid(Edid(1)), FakeDisplaySystem::WithEdid(Edid(2)),
                          tc.lastHasEdid ? FakeDisplaySystem::WithEdid(Edid(3)) : FakeDisplaySystem::Device{}};
        platform::ScopedDisplaySystem scope(system);
        int32_t count = 0;
        GetEdidData(nullptr, count);
        EXPECT_EQ(count, tc.count) << tc.monitors << tc.lastHasEdid;
        EXPECT_EQ(system.listsOpened, tc.walks) << tc.monitors << tc.lastHasEdid;
    }
}

TEST(GetEdidData, SkipsInactiveAndMirroringMonitors) {
    FakeDisplaySystem system;
    system.adapters = {{L"A0", {{L"MONITOR\\X\\0", 0}, {L"MONITOR\\Y\\0", platform::kDisplayActive | platform::kDisplayMirroring}}},
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
    platform::ScopedDisplaySystem inner(noList);
    count = 0;
    GetEdidData(nullptr, count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(noList.listsOpened, 1);  // an empty walk ends the adapter's monitors
}

TEST(FindEdidValue, TakesOnlyAnExactEdidThatFits) {
    using Value = FakeDisplaySystem::Value;
    const std::vector<uint8_t> full = Edid(9, 1024);
    struct Case {
        const char* name;
        std::vector<Value> values;
        bool found;
        EdidBlock out;
    } cases[] = {
        {"exact", {{L"EDID", Edid(5)}}, true, Padded(Edid(5))},
        {"other case", {{L"edid", Edid(5)}}, false, EdidBlock{}},
        {"longer name", {{L"EDID2", Edid(5)}}, false, EdidBlock{}},
        {"full size", {{L"EDID", full}}, true, Padded(full)},
        {"too long", {{L"EDID", Edid(9, 1025)}}, false, EdidBlock{}},
        // The tail of a short EDID is what the data buffer held before.
        {"after another", {{L"Name0", {0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA}}, {L"EDID", {1, 2}}}, true,
         Padded({1, 2, 0xAA, 0xAA, 0xAA, 0xAA})},
        // Lengths shrink with every value: a longer name or more data then no longer fit.
        {"after a short name", {{L"A", {1}}, {L"EDID", {2}}}, false, EdidBlock{}},
        {"after little data", {{L"Named", {1}}, {L"EDID", {2, 3}}}, false, EdidBlock{}},
    };
    for (const auto& tc : cases) {
        FakeDisplaySystem system = FakeDisplaySystem::WithMonitors(1);
        system.devices = {{true, tc.values}};
        platform::ScopedDisplaySystem scope(system);
        EdidBlock out{};
        ASSERT_TRUE(system.EnumDevice(1, 0));
        const platform::RegistryKey key = system.OpenDeviceKey(1);
        EXPECT_EQ(FindEdidValue(key, out.data()), tc.found) << tc.name;
        EXPECT_EQ(FindEdidValue(key, nullptr), tc.found) << tc.name;
        EXPECT_EQ(out, tc.out) << tc.name;
    }
}

// The machine's own displays: whatever they hold, the fill pass walks the
// same devices as the count pass and adds nothing to the count.
TEST(GetEdidData, CountsAndFillsTheSystemsOwnDisplays) {
    int32_t count = 0;
    EXPECT_EQ(GetEdidData(nullptr, count), 0);
    ASSERT_GE(count, 0);
    std::vector<EdidBlock> blocks(static_cast<std::size_t>(count), EdidBlock{});
    if (count > 0) GetEdidData(blocks.data(), count);
    EXPECT_EQ(count, static_cast<int32_t>(blocks.size()));
}

TEST(MonitorHardwareId, TakesTheTextBetweenTheFirstTwoSeparators) {
    struct Case {
        const wchar_t* id;
        const wchar_t* hardware;
    } cases[] = {
        {L"MONITOR\\ABC1234\\{4d36e96e-e325-11ce-bfc1-08002be10318}\\0001", L"ABC1234"},
        {L"MONITOR\\A\\0", L"A"},
        {L"MONITOR\\X\\0", L"X"},
        {L"MONITOR\\\\0", L""},  // the separator at 8 is not searched for
        {L"MONITOR\\ABC", L""},
        {L"MONITOR\\", L""},
        {L"", L""},
    };
    for (const auto& tc : cases) EXPECT_EQ(MonitorHardwareId(tc.id), tc.hardware) << tc.id;
}

}  // namespace
}  // namespace quarnel
