#pragma once

#include <QByteArray>

class Filter;
struct SearchResult;

/// The report for machines: one JSON object, with the same content as the one for people.
QByteArray jsonReport(const Filter &filter, const SearchResult &result);
