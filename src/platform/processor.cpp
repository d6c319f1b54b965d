// SPDX-License-Identifier: MIT
#include "platform/processor.h"

#include "core/wide_vectors.h"

namespace quarnel::platform {
namespace {

class MachineProcessor final : public Processor {
public:
    bool HasWideVectors() const override { return wide_; }

private:
    bool wide_ = Ask();

    static bool Ask() {
#ifdef QUARNEL_WIDE_VECTORS
        __builtin_cpu_init();
        return __builtin_cpu_supports("avx2") != 0;
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
