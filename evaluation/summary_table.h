#pragma once

#include <span>
#include <string>

#include "evaluation/case_result.h"
#include "evaluation/suite_summary.h"

namespace orvandel::evaluation {

// Lines with their line breaks.

/// The head of an aligned table whose first column takes names of so many characters.
std::string SummaryTableHead(std::size_t name_width);
std::string SummaryTableRow(const SuiteSummary& summary, std::size_t name_width);

std::string SummaryCsvHead();
std::string SummaryCsvRow(const SuiteSummary& summary);

/// A CSV file with a line per case. The centre of the top-left pixel is (0, 0).
std::string CasesCsv(std::span<const CaseResult> results);

}  // namespace orvandel::evaluation
