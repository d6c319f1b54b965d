// SPDX-License-Identifier: MIT
#pragma once
// Test seams of the platform layer: every OS-facing interface has one slot
// that a test can point at a fake for a while; the library asks the slot
// first and falls back to the system's own backend.

namespace quarnel::platform {

template <typename Interface>
Interface*& OverrideSlot() {
    static Interface* active = nullptr;
    return active;
}

// The interface in use: a test's fake when one is in place, else `system()`.
template <typename Interface, typename SystemBackend>
Interface& ActiveOr(SystemBackend system) {
    Interface* active = OverrideSlot<Interface>();
    return active != nullptr ? *active : system();
}

// Routes `Interface` to `replacement` for the object's lifetime.
template <typename Interface>
class ScopedOverride {
public:
    explicit ScopedOverride(Interface& replacement) : previous_(OverrideSlot<Interface>()) {
        OverrideSlot<Interface>() = &replacement;
    }
    ~ScopedOverride() { OverrideSlot<Interface>() = previous_; }
    ScopedOverride(const ScopedOverride&) = delete;
    ScopedOverride& operator=(const ScopedOverride&) = delete;

private:
    Interface* previous_;
};

}  // namespace quarnel::platform
