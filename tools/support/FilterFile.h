#pragma once

#include <Vokit/Expression>

/**
 * @file
 * Filters in files: the byte stream of a tree, in the format of Qt 5.15, and nothing else.
 *
 * Both functions throw Failure. Messages name the file.
 */

/// Writes the file whole, or leaves it as it was.
void saveFilter(const vogen::ExpressionHandle &filter, const QString &name);

/**
 * Reads a filter that saveFilter() wrote.
 *
 * Refused is what reads as an empty filter, what would not be written in the same bytes again (so
 * all that is cut off, damaged or followed by more), and a filter with a function that nobody
 * registered. Which columns it names shows only in the search.
 */
vogen::ExpressionHandle loadFilter(const QString &name);
