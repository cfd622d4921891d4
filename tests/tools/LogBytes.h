#pragma once

#include <QByteArray>

/// Log files in bytes.
namespace bytes {

inline const QByteArray gDeclaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";
/// A root as a client leaves it that logs nothing.
inline const QByteArray gOpenRoot =
    R"(<Entries Version="v0.1" LogFile="/logs/client.vol" Date="2026-11-21T15:04:05")";
inline const QByteArray gHead = gDeclaration + gOpenRoot + '>';
inline const QByteArray gEnd = "</Entries>\n";

inline QByteArray entry(const QByteArray &text)
{
    return R"(<Entry ID="ExpD" Time="21 Nov 2026 15:04:05" User="ann" Text=")" + text + "\"/>";
}

/// A rename with the name of its source in the way that no XML reader takes.
inline const QByteArray gRename =
    QByteArray(R"(<Entry ID="ExpR" Time="21 Nov 2026 15:04:05" User="ann" Text="t" path="/usb/" )"
               R"(^src="old.avi" dest="new.avi"/>)")
        .replace('^', '\0');

inline const QByteArray gOne = entry("one");
inline const QByteArray gTwo = entry("two");

} // namespace bytes
