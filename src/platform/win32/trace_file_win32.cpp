// SPDX-License-Identifier: MIT
#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <cstring>

#include "platform/trace_file.h"
#include "platform/utf8.h"

namespace quarnel::platform {

std::string SystemTraceFilePath() { return "C:\\QXTRACE\\VOKLOG\\CctTrace.txt"; }

std::FILE* OpenTraceFile(const std::string& path, const char* mode) {
    const bool append = std::strchr(mode, 'a') != nullptr;
    const std::wstring wide = FromUtf8(path);
    // FILE_FLAG_OPEN_REPARSE_POINT: open a link itself, never its target.
    HANDLE handle = CreateFileW(wide.c_str(), append ? (GENERIC_READ | FILE_APPEND_DATA) : GENERIC_READ,
                                FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, append ? OPEN_ALWAYS : OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return nullptr;
    const int fd = _open_osfhandle(reinterpret_cast<intptr_t>(handle), append ? (_O_APPEND | _O_RDWR) : _O_RDONLY);
    if (fd < 0) {
        CloseHandle(handle);
        return nullptr;
    }
    std::FILE* file = _fdopen(fd, mode);
    if (file == nullptr) _close(fd);
    return file;
}

bool RemoveTraceFile(const std::string& path) { return DeleteFileW(FromUtf8(path).c_str()) != 0; }

}  // namespace quarnel::platform
