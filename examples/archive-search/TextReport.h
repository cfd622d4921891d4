#pragma once

#include <QString>

class Filter;
struct SearchResult;

/**
 * @file
 * The report for people.
 */

/// The filter in all styles, with what is bound to its placeholders.
QString filterText(const Filter &filter);

/// What was found, how long it took, and where the two sides disagree.
QString resultText(const SearchResult &result);
