// SPDX-License-Identifier: MIT
#pragma once
// The processor: whether it runs the wide (AVX2) form of the LUT loops.

#include "platform/seam.h"

namespace quarnel::platform {

class Processor {
public:
    virtual ~Processor() = default;
    virtual bool HasWideVectors() const = 0;
};

// The processor in use: the machine's own, asked once per process, unless a
// test has put its own in place.
const Processor& ActiveProcessor();

// `wide` where the processor in use runs the wide form, else `baseline`.
template <typename Form>
Form ActiveForm(Form baseline, Form wide) {
    return ActiveProcessor().HasWideVectors() ? wide : baseline;
}

// Test seam: a processor that offers, or withholds, the wide form.
using ScopedProcessor = ScopedOverride<const Processor>;

}  // namespace quarnel::platform
