#pragma once

#include <QString>

#include <stdexcept>

/// Why the program can't go on, in one line for the user: wrong use, or something that it was told
/// to use and can't.
class Failure : public std::runtime_error
{
public:
    explicit Failure(const QString &message)
        : std::runtime_error(message.toStdString())
    {}

    QString message() const { return QString::fromUtf8(what()); }
};
