// SPDX-License-Identifier: MIT
#pragma once
// Captures what the library says on its debugger channel and standard output.

#include <string>
#include <vector>

#include "platform/debug_channel.h"

namespace quarnel::test {

// Records every wide debugger message while it lives.
class DebugCapture final : public platform::DebugChannel {
public:
    DebugCapture();
    void Write(std::wstring_view text) override;
    const std::vector<std::wstring>& messages() const { return messages_; }
    std::wstring joined() const;

private:
    std::vector<std::wstring> messages_;
    platform::ScopedDebugChannel scope_;
};

void BeginStdoutCapture();
std::string EndStdoutCapture();

// Runs `fn` and returns what it printed on standard output.
template <typename Fn>
std::string CaptureStdout(Fn&& fn) {
    BeginStdoutCapture();
    fn();
    return EndStdoutCapture();
}

}  // namespace quarnel::test
