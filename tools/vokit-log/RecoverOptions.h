#pragma once

#include <QString>
#include <QStringList>

#include <optional>

struct RecoverOptions
{
    QString input;
    QString output; ///< "-" for the standard output
    QString report; ///< empty for none
    bool force = false;

    bool isToStandardOutput() const { return output == QLatin1String("-"); }
};

/// Nothing if the help was asked for; then it has been given.
/// @throws UsageFailure
std::optional<RecoverOptions> parseRecoverOptions(const QStringList &arguments);
