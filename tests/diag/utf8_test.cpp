// SPDX-License-Identifier: MIT
#include "platform/utf8.h"

#include <gtest/gtest.h>

namespace quarnel::platform {
namespace {

TEST(Utf8, RoundTripsMessagesAndNonAsciiText) {
    const struct {
        std::wstring wide;
        std::string utf8;
    } cases[] = {
        {L"; VOK: Enter CCTAPI()\n", "; VOK: Enter CCTAPI()\n"},
        {L"K\u00e4lzen \u6e29\u5ea6", "K\xc3\xa4lzen \xe6\xb8\xa9\xe5\xba\xa6"},
        {L"\U0001F308", "\xf0\x9f\x8c\x88"},
    };
    for (const auto& tc : cases) {
        EXPECT_EQ(ToUtf8(tc.wide), tc.utf8);
        EXPECT_EQ(FromUtf8(tc.utf8), tc.wide);
    }
}

TEST(Utf8, MalformedInputBecomesReplacementCharacters) {
    EXPECT_EQ(FromUtf8("a\xff"
                       "b"),
              L"a\ufffd"
              L"b");
    EXPECT_EQ(FromUtf8("\xe6\xb8"), L"\ufffd\ufffd");
    EXPECT_EQ(FromUtf8("\xc3(x"), L"\ufffd(x");
}

}  // namespace
}  // namespace quarnel::platform
