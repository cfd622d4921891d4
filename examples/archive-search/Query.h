#pragma once

#include "Filter.h"
#include "SortKey.h"

#include <QStringList>

#include <optional>

struct Options;

/// What is searched for, and what is made of the matches.
struct Query
{
    /// @throws Failure for a filter that can't be loaded and an order that isn't known
    explicit Query(const Options &options);

    /// The rules by which memory and SQLite differ in it, a line each.
    QStringList notes() const;

    Filter filter;
    std::optional<SortKey> sortKey;
    bool grouped;
    bool withCode; ///< the report shows the expressions as code, too
};
