#pragma once

#include <QByteArray>

struct Query;
struct SearchResult;

/// The report for machines: one JSON object, with the same content as the one for people.
QByteArray jsonReport(const Query &query, const SearchResult &result);
