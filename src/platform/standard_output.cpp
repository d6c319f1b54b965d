// SPDX-License-Identifier: MIT
#include "platform/standard_output.h"

#include <cstdio>

namespace quarnel::platform {
namespace {

class ProcessStandardOutput final : public StandardOutput {
public:
    int Print(const char* format, std::va_list args) override { return std::vprintf(format, args); }
};

StandardOutput& SystemStandardOutput() {
    static ProcessStandardOutput output;
    return output;
}

}  // namespace

StandardOutput& ActiveStandardOutput() { return ActiveOr<StandardOutput>(SystemStandardOutput); }

}  // namespace quarnel::platform
