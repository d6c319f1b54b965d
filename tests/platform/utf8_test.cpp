// SPDX-License-Identifier: MIT
#include "platform/utf8.h"

#include <gtest/gtest.h>

namespace quarnel::platform {
namespace {

TEST(Utf8, RoundTripsTextAndReplacesMalformedInput) {
    const struct {
        std::wstring wide;
        std::string utf8;
        bool both;  // false: malformed UTF-8, decoded only
    } cases[] = {
        {L"; VOK: Enter CCTAPI()\n", "; VOK: Enter CCTAPI()\n", true},
        {L"K\u00e4lzen \u6e29\u5ea6", "K\xc3\xa4lzen \xe6\xb8\xa9\xe5\xba\xa6", true},
        {L"\U0001F308", "\xf0\x9f\x8c\x88", true},
        {L"a\ufffd-", "a\xff-", false},
        {L"\ufffd\ufffd", "\xe6\xb8", false},
        {L"\ufffd(x", "\xc3(x", false},
    };
    for (const auto& tc : cases) {
        EXPECT_EQ(FromUtf8(tc.utf8), tc.wide);
        if (tc.both) {
            EXPECT_EQ(ToUtf8(tc.wide), tc.utf8);
        }
    }
}

}  // namespace
}  // namespace quarnel::platform
