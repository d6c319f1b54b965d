// SPDX-License-Identifier: MIT
#pragma once
// The standard streams as the tool finds them at start.

namespace quarnel::tool {

// A closed standard stream would hand its number to the next file the tool
// opens, which quieting the library's output would then close. Each closed
// one is held by /dev/null opened the other way, so using it still fails.
// main calls it once, first thing.
void HoldClosedStandardStreams();

}  // namespace quarnel::tool
