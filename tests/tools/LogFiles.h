#pragma once

#include "examples/ProgramRun.h"

/// One of the logs that the log's own tests keep.
inline QString stored(const char *name)
{
    return QStringLiteral(STORED_LOGS "/") + QLatin1String(name);
}

/// How a log begins.
inline QByteArray head(const QByteArray &date = "2026-11-21T15:04:05")
{
    return R"(<?xml version="1.0" encoding="UTF-8"?><Entries Version="v0.1" LogFile="/logs/c.vol")"
           " Date=\"" +
           date + "\">";
}

/// An entry "Export done", in the form of the C locale.
inline QByteArray done(const QByteArray &text, const QByteArray &user = "ann",
                       const QByteArray &time = "21 Nov 2026 15:04:05")
{
    return "<Entry ID=\"ExpD\" Time=\"" + time + "\" User=\"" + user + "\" Text=\"" + text + "\"/>";
}

/// The line of it in prose.
inline QByteArray doneLine(const QByteArray &text, const QByteArray &user = "ann",
                           const QByteArray &time = "2026-11-21 15:04:05")
{
    return time + "  " + user + "  Export done  " + text + '\n';
}

/// A temporary folder.
class Folder
{
public:
    QString path(const char *name) const
    {
        return m_folder.path() + QLatin1Char('/') + QString::fromUtf8(name);
    }

    /// Gives the file's name.
    QString write(const char *name, const QByteArray &bytes,
                  QIODevice::OpenMode mode = QIODevice::WriteOnly) const
    {
        QFile file(path(name));
        if (!file.open(mode) || file.write(bytes) != bytes.size())
            qFatal("%s: not written", name);
        return file.fileName();
    }

    QString append(const char *name, const QByteArray &bytes) const
    {
        return write(name, bytes, QIODevice::WriteOnly | QIODevice::Append);
    }

private:
    QTemporaryDir m_folder;
};

/// An environment variable for as long as it lives.
class Variable
{
public:
    Variable(const char *name, const QByteArray &value)
        : m_name(name)
        , m_before(qgetenv(name))
        , m_wasSet(qEnvironmentVariableIsSet(name))
    {
        qputenv(name, value);
    }
    ~Variable()
    {
        if (m_wasSet)
            qputenv(m_name, m_before);
        else
            qunsetenv(m_name);
    }
    Variable(const Variable &) = delete;
    Variable &operator=(const Variable &) = delete;

private:
    const char *m_name;
    QByteArray m_before;
    bool m_wasSet;
};
