// SPDX-License-Identifier: MIT
#pragma once
// The processor: whether it runs the wide (AVX2) and the widest (AVX-512)
// forms of the LUT loops.

#include "platform/seam.h"

namespace quarnel::platform {

class Processor {
public:
    virtual ~Processor() = default;
    virtual bool HasWideVectors() const = 0;
    // Only a processor with the wide vectors has the wider ones.
    virtual bool HasWiderVectors() const = 0;
};

// The processor in use: the machine's own, asked once per process, unless a
// test has put its own in place.
const Processor& ActiveProcessor();

// `wide` where the processor in use runs the wide form, else `baseline`.
template <typename Form>
Form ActiveForm(Form baseline, Form wide) {
    return ActiveProcessor().HasWideVectors() ? wide : baseline;
}

// `wider` where the processor in use runs the widest form, else as above.
template <typename Form>
Form ActiveForm(Form baseline, Form wide, Form wider) {
    return ActiveProcessor().HasWiderVectors() ? wider : ActiveForm(baseline, wide);
}

// Test seam: a processor that offers, or withholds, the wide forms.
using ScopedProcessor = ScopedOverride<const Processor>;

}  // namespace quarnel::platform
