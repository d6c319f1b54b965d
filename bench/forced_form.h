// SPDX-License-Identifier: MIT
#pragma once
// Runs a benchmark with the LUT loops forced into one form (argument
// "form", in the order of VectorForm), so that one run measures what each
// form takes off a whole request.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <vector>

#include "platform/processor.h"

namespace quarnel::bench {

// Holds the form for the benchmark's lifetime; where the processor does not
// run it, the benchmark is skipped and the object is false.
class ForcedForm {
public:
    ForcedForm(benchmark::State& state, int64_t form) : form_(static_cast<VectorForm>(form)) {
        if (platform::ProcessorRuns(form_))
            scope_.emplace(form_);
        else
            state.SkipWithError("this processor does not run the form");
    }
    explicit operator bool() const { return scope_.has_value(); }

private:
    VectorForm form_;
    std::optional<platform::ScopedVectorForm> scope_;
};

// Adds the form as the last argument, every form in turn.
inline void EveryForm(benchmark::internal::Benchmark* b, std::initializer_list<int64_t> args) {
    for (int64_t form = 0; form < static_cast<int64_t>(kVectorFormCount); ++form) {
        std::vector<int64_t> all(args);
        all.push_back(form);
        b->Args(all);
    }
}

}  // namespace quarnel::bench
