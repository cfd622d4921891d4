#pragma once

#include "Exports.h"

#include <QStringList>

#include <functional>
#include <memory>

/// What one contestant writes its entries with.
class LogSink
{
public:
    LogSink() = default;
    virtual ~LogSink() = default;
    LogSink(const LogSink &) = delete;
    LogSink &operator=(const LogSink &) = delete;

    /// Writes the export of that index. What it wrote is with the system when it returns.
    virtual void append(std::size_t index) = 0;
};

/// One way to write a log.
struct LogContestant
{
    const char *name;
    /// Begins a new log in a directory of its own.
    std::function<std::unique_ptr<LogSink>(const QString &directory)> begin;
    /// The lines of all entries that stand in a file, in any order.
    std::function<QStringList(const QByteArray &file)> read;
};

/// The exports as the peers get them: whatever is no matter of writing is done.
struct PreparedExports
{
    std::vector<Export> records;
    std::vector<QString> times;
    std::vector<QString> froms;
    std::vector<QString> tos;
    std::vector<std::string> lines; ///< UTF-8
};

const PreparedExports &preparedExports();

/// Adds one to those that run. While the program loads, for peers that may not be installed.
bool addContestant(LogContestant contestant);
