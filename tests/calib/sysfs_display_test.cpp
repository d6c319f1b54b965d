// SPDX-License-Identifier: MIT
#include "platform/posix/sysfs_display_system.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "calib/edid.h"
#include "support/temp_dir.h"

namespace quarnel {
namespace {

void AddConnector(const test::TempDir& drm, const std::string& name, const std::string& status,
                  const std::string& edid) {
    std::filesystem::create_directories(drm / name);
    test::WriteFile(drm / name / "status", status + "\n");
    test::WriteFile(drm / name / "edid", edid);
}

std::string SampleEdid() {
    std::string edid(256, '\0');
    for (std::size_t i = 0; i < edid.size(); ++i) edid[i] = static_cast<char>(i ^ 0x5A);
    return edid;
}

TEST(SysfsDisplaySystem, CardsAreAdaptersAndConnectedConnectorsMonitors) {
    test::TempDir drm;
    for (const char* card : {"card10", "card2", "renderD128"}) std::filesystem::create_directories(drm / card);
    AddConnector(drm, "card2-eDP-1", "connected", SampleEdid());
    AddConnector(drm, "card2-HDMI-A-1", "disconnected", "");
    AddConnector(drm, "card10-DP-3", "connected", "");
    const auto system = platform::MakeSysfsDisplaySystem(drm.path());
    platform::DisplayDevice device;
    ASSERT_TRUE(system->EnumDisplayDevice(nullptr, 0, device));
    EXPECT_EQ(device.name, L"card2");
    ASSERT_TRUE(system->EnumDisplayDevice(nullptr, 1, device));
    EXPECT_EQ(device.name, L"card10");
    EXPECT_FALSE(system->EnumDisplayDevice(nullptr, 2, device));
    ASSERT_TRUE(system->EnumDisplayDevice(L"card2", 0, device));
    EXPECT_EQ(device.name, L"card2-eDP-1");
    EXPECT_EQ(device.stateFlags, platform::kDisplayActive);
    EXPECT_EQ(MonitorHardwareId(device.id), L"card2-eDP-1");
    EXPECT_FALSE(system->EnumDisplayDevice(L"card2", 1, device));
    EXPECT_FALSE(platform::MakeSysfsDisplaySystem("/nonexistent/drm")->EnumDisplayDevice(nullptr, 0, device));
}

TEST(SysfsDisplaySystem, TheEdidFileIsTheEdidValue) {
    test::TempDir drm;
    std::filesystem::create_directories(drm / "card0");
    AddConnector(drm, "card0-eDP-1", "connected", SampleEdid());
    AddConnector(drm, "card0-DP-1", "connected", "");  // no EDID read: the key holds no value
    auto system = platform::MakeSysfsDisplaySystem(drm.path());
    platform::ScopedDisplaySystem scope(*system);
    int32_t count = 0;
    GetEdidData(nullptr, count);
    EXPECT_EQ(count, 2);  // DP-1 sorts first; the last connector has an EDID, so one walk only
    std::vector<EdidBlock> blocks(2, EdidBlock{});
    GetEdidData(blocks.data(), count);
    EXPECT_EQ(blocks[0], EdidBlock{});
    EdidBlock expected{};
    const std::string edid = SampleEdid();
    std::copy(edid.begin(), edid.end(), expected.begin());
    EXPECT_EQ(blocks[1], expected);
}

}  // namespace
}  // namespace quarnel
