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

// Cards are adapters, connected connectors their monitors and a connector's edid file its EDID value.
TEST(SysfsDisplaySystem, CardsConnectorsAndEdidFiles) {
    test::TempDir drm;
    std::string edid(256, '\0');
    for (std::size_t i = 0; i < edid.size(); ++i) edid[i] = static_cast<char>(i ^ 0x5A);
    for (const char* card : {"card10", "card2", "renderD128"}) std::filesystem::create_directories(drm / card);
    for (auto [name, status, bytes] :
         {std::tuple<const char*, const char*, std::string>{"card2-eDP-1", "connected", edid},
          {"card2-HDMI-A-1", "disconnected", ""},
          {"card2-DP-1", "connected", ""},  // no EDID read: the key holds no value
          {"card10-DP-3", "connected", ""}}) {
        std::filesystem::create_directories(drm / name);
        test::WriteFile(drm / name / "status", std::string(status) + "\n");
        test::WriteFile(drm / name / "edid", bytes);
    }
    const auto system = platform::MakeSysfsDisplaySystem(drm.path());
    platform::DisplayDevice device;
    std::vector<std::wstring> seen;
    for (const wchar_t* adapter : {static_cast<const wchar_t*>(nullptr), L"card2", L"card10"})
        for (uint32_t i = 0; system->EnumDisplayDevice(adapter, i, device); ++i)
            seen.push_back(device.name + L" " + MonitorHardwareId(device.id) + L" " +
                           std::to_wstring(device.stateFlags));
    EXPECT_EQ(seen, (std::vector<std::wstring>{L"card2  0", L"card10  0", L"card2-DP-1 card2-DP-1 1",
                                               L"card2-eDP-1 card2-eDP-1 1", L"card10-DP-3 card10-DP-3 1"}));
    EXPECT_FALSE(platform::MakeSysfsDisplaySystem("/nonexistent/drm")->EnumDisplayDevice(nullptr, 0, device));

    std::filesystem::remove_all(drm / "card10");
    std::filesystem::remove_all(drm / "card10-DP-3");
    const auto card2 = platform::MakeSysfsDisplaySystem(drm.path());
    platform::ScopedDisplaySystem scope(*card2);
    int32_t count = 0;
    GetEdidData(nullptr, count);
    ASSERT_EQ(count, 2);  // DP-1 sorts first; the last connector has an EDID, so one walk only
    std::vector<EdidBlock> blocks(2, EdidBlock{});
    GetEdidData(blocks.data(), count);
    EdidBlock expected{};
    std::copy(edid.begin(), edid.end(), expected.begin());
    EXPECT_EQ(blocks, (std::vector<EdidBlock>{EdidBlock{}, expected}));
}

}  // namespace
}  // namespace quarnel
