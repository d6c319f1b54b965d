// SPDX-License-Identifier: MIT
#include "io/progress_bar.h"

#include <unistd.h>

#include <iostream>

namespace quarnel::tool {
namespace {
constexpr size_t kWidth = 40;
}

ProgressBar::ProgressBar(std::string label, size_t total)
    : label_(std::move(label)), total_(total), terminal_(::isatty(STDERR_FILENO) == 1) {}

ProgressBar::~ProgressBar() {
    if (terminal_ && drawn_ != static_cast<size_t>(-1)) std::cerr << "\r\033[K" << std::flush;
}

void ProgressBar::Show(size_t done) {
    if (!terminal_ || total_ == 0) return;
    // Redrawn only when it changes: a thousandth of the lot at a time.
    const size_t step = done * 1000 / total_;
    if (step == drawn_) return;
    drawn_ = step;
    const size_t filled = done * kWidth / total_;
    std::cerr << '\r' << label_ << " [" << std::string(filled, '#') << std::string(kWidth - filled, ' ') << "] " << done
              << '/' << total_ << std::flush;
}

}  // namespace quarnel::tool
