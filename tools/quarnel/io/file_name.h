// SPDX-License-Identifier: MIT
#pragma once
// What a file's name tells of its contents.

#include <string>
#include <string_view>

namespace quarnel::tool {

// The extension in lower case without its dot: "x.CAL" gives "cal", "x" "".
std::string ExtensionOf(const std::string& path);

// Whether the path's extension is `extension` (lower case, no dot), in any case.
bool HasExtension(const std::string& path, std::string_view extension);

// A device, a pipe or a socket rather than a file (/dev/null, /dev/stdout, a
// named pipe): somewhere a stream of text goes, whatever its name says.
bool IsStream(const std::string& path);

}  // namespace quarnel::tool
