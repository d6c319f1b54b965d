// SPDX-License-Identifier: MIT
#pragma once
// Every input file is read with a bound, so that a device or a huge file
// ends the read at once instead of filling memory or never ending.

#include <cstddef>
#include <string>

namespace quarnel::tool {

// Descriptions, curves and strings are a few kilobytes; a megabyte is far
// more than any of them needs.
inline constexpr size_t kMaxTextInput = size_t{1} << 20;

// Throws ToolError (66) unless `path` is a regular file or a link to one.
void RequireRegularFile(const std::string& path);

// Reads at most `limit` + 1 bytes of `path`. Throws ToolError: 66 when the
// file is missing, unreadable or not a regular file (a directory, a named
// pipe, a device); 65 when it holds more than `limit` bytes.
std::string ReadInputFile(const std::string& path, size_t limit = kMaxTextInput);

// A file of exactly `size` bytes, else ToolError (65) saying that `path` is
// not `what`; 66 as ReadInputFile.
std::string ReadFileOfSize(const std::string& path, size_t size, const std::string& what);

}  // namespace quarnel::tool
