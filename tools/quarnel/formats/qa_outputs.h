// SPDX-License-Identifier: MIT
#pragma once
// A lot's QA as text for a person (a line per panel and a closing
// summary), as CSV for a spreadsheet and as JSON for programs. Numbers are
// written the same in every locale.

#include <string>

#include "formats/qa_lot.h"

namespace quarnel::tool {

std::string QaLine(const std::string& file, const QaResult& result, const QaLot& lot);
// Counts by verdict, misses by threshold, medians and 95th percentiles of
// the ok panels' metrics; `outliers` names the outlying panels.
std::string QaSummary(const QaLot& lot, const std::vector<std::string>& outliers);

std::string QaCsvHeader();
std::string QaCsvRow(const std::string& file, const QaResult& result, const QaLot& lot);

// The JSON document is the head, the rows joined by commas, the tail.
std::string QaJsonHead(const QaLot& lot);
std::string QaJsonRow(const std::string& file, const QaResult& result, const QaLot& lot);
std::string QaJsonTail(const QaLot& lot);

// "0.3127" with `digits` decimals, "" for a value that was not measured.
std::string QaNumber(double value, int digits);
// A mode's name in column and key names: the normal slider position is "normal".
std::string QaModeKey(size_t mode);

}  // namespace quarnel::tool
