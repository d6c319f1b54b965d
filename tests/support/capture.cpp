// SPDX-License-Identifier: MIT
#include "support/capture.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace quarnel::test {

DebugCapture::DebugCapture() : scope_(*this) {}

void DebugCapture::Write(std::wstring_view text) { messages_.emplace_back(text); }

std::wstring DebugCapture::joined() const {
    std::wstring all;
    for (const auto& m : messages_) all += m;
    return all;
}

void BeginStdoutCapture() {
    std::fflush(stdout);
    testing::internal::CaptureStdout();
}

std::string EndStdoutCapture() {
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

}  // namespace quarnel::test
