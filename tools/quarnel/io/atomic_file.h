// SPDX-License-Identifier: MIT
#pragma once
// Outputs appear whole or not at all: the bytes go to a temporary file in
// the target's folder, which is renamed over the target once complete. A
// symbolic link stays and its target is replaced, keeping its mode; a
// device or FIFO is written in place.

#include <string>
#include <string_view>

namespace quarnel::tool {

// Throws ToolError, 73 when the file cannot be created, 74 when writing
// fails (full disk, closed pipe); nothing is left behind then. Path "-"
// writes to standard output.
void WriteFileAtomically(const std::string& path, std::string_view bytes);

// Writes every byte to `fd`, through interruptions; false on any failure.
bool WriteAll(int fd, std::string_view bytes);

// Flushes what the tool printed; throws ToolError (74) when any of it failed.
void FlushStandardOutput();

}  // namespace quarnel::tool
