#include "platform/display_system.h"

namespace quarnel::platform {

DisplaySystem& SystemDisplaySystem();  // per-system backend

namespace {
DisplaySystem*& Slot() {
    static DisplaySystem* active = nullptr;
    return active;
}
}  // namespace

DisplaySystem& ActiveDisplaySystem() {
    DisplaySystem* active = Slot();
    return active != nullptr ? *active : SystemDisplaySystem();
}

ScopedDisplaySystem::ScopedDisplaySystem(DisplaySystem& system) : previous_(Slot()) { Slot() = &system; }

ScopedDisplaySystem::~ScopedDisplaySystem() { Slot() = previous_; }

}  // namespace quarnel::platform
