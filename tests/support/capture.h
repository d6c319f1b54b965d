// SPDX-License-Identifier: MIT
#pragma once
// Captures what the library says on its debugger channel and standard output.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "platform/debug_channel.h"

namespace quarnel::test {

// Records every wide debugger message while it lives.
class DebugCapture final : public platform::DebugChannel {
public:
    void Write(const wchar_t* text) override { messages_.emplace_back(text); }
    const std::vector<std::wstring>& messages() const { return messages_; }
    std::wstring joined() const {
        std::wstring all;
        for (const auto& m : messages_) all += m;
        return all;
    }

private:
    std::vector<std::wstring> messages_;
    platform::ScopedDebugChannel scope_{*this};
};

// Runs `fn` and returns what it printed on standard output.
template <typename Fn>
std::string CaptureStdout(Fn&& fn) {
    std::fflush(stdout);
    testing::internal::CaptureStdout();
    fn();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

}  // namespace quarnel::test
