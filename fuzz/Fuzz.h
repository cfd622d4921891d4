#pragma once

#include <QtGlobal>

#include <cstdio>
#include <cstdlib>

/// What the fuzz targets have in common.
namespace fuzz {

inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "fuzz: %s\n", what);
    std::abort();
}

/// Qt's own warnings are no finding, and would slow the run down.
inline void silenceQt()
{
    [[maybe_unused]] static const auto before =
        qInstallMessageHandler([](QtMsgType /*type*/, const QMessageLogContext & /*context*/,
                                  const QString & /*text*/) {});
}

} // namespace fuzz
