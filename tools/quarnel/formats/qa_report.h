// SPDX-License-Identifier: MIT
#pragma once
// A lot's QA as one self-contained HTML page (no scripts, nothing fetched):
// the whites and primaries of every panel drawn in inline SVG, histograms of
// the main metrics, then a row per panel, the failing and outlying first.

#include <string>
#include <vector>

#include "formats/qa_lot.h"

namespace quarnel::tool {

class OutputStream;

// Writes the page into `out`; the caller commits it.
void WriteQaReport(OutputStream& out, const std::vector<std::string>& files, const std::vector<QaResult>& results,
                   const QaLot& lot);

}  // namespace quarnel::tool
