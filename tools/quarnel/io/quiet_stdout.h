// SPDX-License-Identifier: MIT
#pragma once
// The library prints its progress to standard output. Around every library
// call the tool points standard output elsewhere, so that only the tool's own
// data reaches it: nowhere normally, standard error with --verbose.

#include <string>

namespace quarnel::tool {

class QuietStdout {
public:
    explicit QuietStdout(bool toStderr);
    ~QuietStdout();
    QuietStdout(const QuietStdout&) = delete;
    QuietStdout& operator=(const QuietStdout&) = delete;

private:
    int saved_ = -1;
};

// Runs `call` with standard output captured and returns what it printed.
template <typename Call>
std::string CaptureStdout(Call&& call);

class StdoutCapture {
public:
    StdoutCapture();
    ~StdoutCapture();
    StdoutCapture(const StdoutCapture&) = delete;
    StdoutCapture& operator=(const StdoutCapture&) = delete;
    std::string Finish();  // restores standard output, returns the captured text

private:
    int saved_ = -1;
    int file_ = -1;
};

template <typename Call>
std::string CaptureStdout(Call&& call) {
    StdoutCapture capture;
    call();
    return capture.Finish();
}

}  // namespace quarnel::tool
