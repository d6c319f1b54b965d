// SPDX-License-Identifier: MIT
#pragma once
// A progress bar on standard error, drawn only when that is a terminal, so
// that logs and pipes see nothing of it. It erases itself when done.

#include <cstddef>
#include <string>

namespace quarnel::tool {

class ProgressBar {
public:
    ProgressBar(std::string label, size_t total);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void Show(size_t done);

private:
    std::string label_;
    size_t total_;
    bool terminal_;
    size_t drawn_ = static_cast<size_t>(-1);  // the last width drawn
};

}  // namespace quarnel::tool
