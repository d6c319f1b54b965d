// SPDX-License-Identifier: MIT
#include "platform/processor.h"

#include "core/wide_vectors.h"

namespace quarnel::platform {
namespace {

class MachineProcessor final : public Processor {
public:
    bool HasWideVectors() const override { return wide_; }
    bool HasWiderVectors() const override { return wider_; }

private:
    bool wide_ = Ask();
    bool wider_ = wide_ && AskWider();

    static bool Ask() {
#ifdef QUARNEL_WIDE_VECTORS
        __builtin_cpu_init();
        return __builtin_cpu_supports("avx2") != 0;
#else
        return false;
#endif
    }

    // The check covers the system as well: it counts AVX-512 only where the
    // system saves the 64-byte registers.
    static bool AskWider() {
#ifdef QUARNEL_WIDER_VECTORS
        return __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512bw") != 0;
#else
        return false;
#endif
    }
};

const Processor& MachineOnce() {
    static const MachineProcessor machine;
    return machine;
}

}  // namespace

const Processor& ActiveProcessor() { return ActiveOr<const Processor>(MachineOnce); }

}  // namespace quarnel::platform
