// SPDX-License-Identifier: MIT
#pragma once
// A decoded CCTAPI request: the request number and its two flag bits.

#include <cstdint>

namespace quarnel {

inline constexpr uint32_t kRegammaFlag = 0x80;
inline constexpr uint32_t kGainFlag = 0x40;

struct Request {
    uint32_t number;       // the code without the two flag bits; every other bit stays
    uint32_t regammaFlag;  // code AND 0x80
    uint32_t gainFlag;     // code AND 0x40
};

inline Request DecodeRequest(uint32_t code) {
    return Request{code & ~(kRegammaFlag | kGainFlag), code & kRegammaFlag, code & kGainFlag};
}

// What a request handler receives besides the context: the request, and the
// re-gamma curve (null when the re-gamma flag is clear).
struct RequestArgs {
    Request request;
    const uint16_t* regammaCurve;
};

}  // namespace quarnel
