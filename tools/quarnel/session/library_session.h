// SPDX-License-Identifier: MIT
#pragma once
// One caller's conversation with the library: a context record, its
// calibration source, and the requests, each with standard output quieted.

#include <memory>
#include <optional>
#include <string>

#include "io/memory_file.h"
#include "quarnel/cctapi.h"
#include "session/curve_options.h"
#include "session/panel_source.h"

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

    void SetApiType(int32_t lutApiType) { ctx_->lutApiType = lutApiType; }
    const CctContext& context() const { return *ctx_; }
    Curve OutCurve() const;
    const std::string& sourceName() const { return sourceName_; }
    // The block file the library reads; empty for the firmware.
    const std::string& sourcePath() const { return sourcePath_; }

private:
    // Why a firmware source gave no factory data, for standard error.
    std::string FirmwareGap() const;

    std::unique_ptr<CctContext> ctx_;
    std::optional<int> firmwarePanel_;
    std::string sourcePath_;                  // the file the library reads, when there is one
    std::unique_ptr<MemoryFile> sampleFile_;  // the sample panel's block, when it is the source
    std::string sourceName_;                  // for messages
    bool verbose_;
};

// After request 1: the record's measured primaries (`bios`) when it found
// factory data, else its colour space; black and tone levels from the block
// file the library read (the record keeps none), when there is one.
PanelSubject DescribePanel(const LibrarySession& session);

}  // namespace quarnel::tool
