#pragma once

#include "OutputBlocks.h"

#include <QString>

class GapList;
class Recovery;
struct RecoverOptions;

/// What was recovered, and what was skipped: for people.
/// @param listed the greatest number of gaps that get a line
void addSummary(OutputBlocks &text, const RecoverOptions &options, const Recovery &recovery,
                GapList &gaps, qint64 listed);

/// The same with all gaps: one JSON object.
void addReport(OutputBlocks &json, const RecoverOptions &options, const Recovery &recovery,
               GapList &gaps);
