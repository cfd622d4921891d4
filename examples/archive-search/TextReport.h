#pragma once

#include <QString>

struct AuditReport;
struct Query;
struct SearchResult;

/**
 * @file
 * The report for people.
 */

/// The filter in all styles, with what is bound to its placeholders, and the other expressions if
/// the query asks for them.
QString queryText(const Query &query);

/// The log's entries, a line each.
QString logText(const AuditReport &audit);

/// The same with a heading, behind other things; empty if the entries were not asked for.
QString logSection(const AuditReport &audit);

/// What was found, how long it took, and where the two sides disagree.
QString resultText(const Query &query, const SearchResult &result);
