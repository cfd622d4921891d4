#pragma once

#include <Vokit/ActionLog>
#include <Vokit/ExportLogEntries>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

/// Entries that tell their number, and files of them.
namespace journal {

/// Begins with the number; @p size characters, of which UTF-8 takes one to four bytes.
inline QString text(int number, int size)
{
    static const QString pattern = QString::fromUtf8("k\u00e4m\u20ac\U0001F3A5 <&> \u65e5\u672c\n");
    QString result = QString::number(number) + QLatin1Char(':');
    while (result.size() < size)
        result += pattern;
    return result;
}

inline void log(vo::ActionLog &log, int number, int size)
{
    log.log(ExportDoneLogEntry(text(number, size)));
}

inline QString textOf(const vo::LogEntry *entry)
{
    for (const vo::LogValue *value : entry->values()) {
        if (value->id() == vo::FourChars(0x54657874))
            return value->toString();
    }
    return QString();
}

inline int numberIn(const QString &text)
{
    return text.section(QLatin1Char(':'), 0, 0).toInt();
}

inline QVector<int> numbers(const vo::ActionLog &log)
{
    QVector<int> result;
    for (const vo::LogEntry *entry : log.entries())
        result.append(numberIn(textOf(entry)));
    return result;
}

/// A log that takes entries, and counts the failures that it tells of.
class Log : public vo::ActionLog
{
public:
    explicit Log(const QString &fileName)
        : ActionLog(fileName)
    {
        const auto count = [this] { ++m_failures; };
        connect(this, &ActionLog::errorFile, this, count);
        connect(this, &ActionLog::errorXml, this, count);
        setSplitPolicy(SplitNone, 0);
        setSuspended(false);
    }

    int failures() const { return m_failures; }

private:
    int m_failures = 0;
};

inline QByteArray bytes(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

inline void write(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

/// What the next start finds in the file: the numbers of whole entries; -1 stands for one that
/// isn't as it was logged, and for a file that can't be read to its end.
inline QVector<int> readAgain(const QString &fileName, int size)
{
    vo::ActionLog log(fileName);
    QVector<int> result;
    try {
        log.readLog();
    } catch (const vo::ActionLogException &e) {
        qWarning("%s: %s", qPrintable(fileName), e.what());
        result.append(-1);
    }
    for (const vo::LogEntry *entry : log.entries()) {
        const QString found = textOf(entry);
        const int number = numberIn(found);
        result.append(found == text(number, size) ? number : -1);
    }
    return result;
}

inline QVector<int> range(int first, int last)
{
    QVector<int> result;
    for (int i = first; i <= last; ++i)
        result.append(i);
    return result;
}

} // namespace journal
