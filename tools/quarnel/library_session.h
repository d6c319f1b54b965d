// SPDX-License-Identifier: MIT
#pragma once
// One caller's conversation with the library: a context record, its
// calibration source, and the requests, each with standard output quieted.

#include <memory>
#include <string>

#include "mode_curve.h"
#include "quarnel/cctapi.h"

namespace quarnel::tool {

class LibrarySession {
public:
    // Prepares the source the options name; throws ToolError for a
    // calibration file that cannot be read (66) or, when `vetBlock`, that the
    // library would refuse (65).
    explicit LibrarySession(const CurveOptions& options, bool vetBlock = true);
    ~LibrarySession();
    LibrarySession(const LibrarySession&) = delete;
    LibrarySession& operator=(const LibrarySession&) = delete;

    // Request 1; throws ToolError (65) when the calibration file fails its
    // checks, naming what is wrong with it.
    int32_t Init();
    int32_t Request(uint32_t code);
    int32_t Vx(int32_t mode, const Curve* toneCurve);

    const CctContext& context() const { return *ctx_; }
    Curve OutCurve() const;
    const std::string& sourceName() const { return sourceName_; }
    // The block file the library reads; empty for the firmware.
    const std::string& sourcePath() const { return sourcePath_; }

private:
    std::unique_ptr<CctContext> ctx_;
    std::string sourcePath_;  // the file the library reads, when there is one
    std::string sampleFile_;  // our own temporary copy of the sample panel
    std::string sourceName_;  // for messages
    bool verbose_;
};

}  // namespace quarnel::tool
