#pragma once

#include <QByteArray>

struct AuditReport;
struct Query;
struct SearchResult;

/// The report for machines: one JSON object, with the same content as the one for people.
QByteArray jsonReport(const Query &query, const SearchResult &result, const AuditReport &audit);

/// The log alone, in an object like the other.
QByteArray jsonReport(const AuditReport &audit);
