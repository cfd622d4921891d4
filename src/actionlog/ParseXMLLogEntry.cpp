#include <Vokit/ParseXMLLogEntry>

#include "actionlog/EntryClock_p.h"

const char *const ParseXMLLogEntry::sAction = QT_TRANSLATE_NOOP("ActionLog", "Action log error");
const char *const ParseXMLLogEntry::sDescriptionText =
    QT_TRANSLATE_NOOP("ActionLog", "Error '%1' reading action log '%2' in line '%3', column '%4'.");
const vo::LogEntryRegistrar ParseXMLLogEntry::sRegistrar = registrar();

ParseXMLLogEntry::ParseXMLLogEntry(const QString &source, const QString &error, const int &line,
                                   const int &column)
    : mSource(0x73726350, QStringLiteral("source"), source)
    , mError(0x65727254, QStringLiteral("error"), error)
    , mLine(0x6572724C, QStringLiteral("line"), line)
    , mColumn(0x65727243, QStringLiteral("colunm"), column) // so spelled in every listing
{
    append(&mSource);
    append(&mError);
    append(&mLine);
    append(&mColumn);
}

ParseXMLLogEntry::~ParseXMLLogEntry() = default;

vo::LogEntry *ParseXMLLogEntry::create()
{
    const vo::EntryClock::Marking marking(&ParseXMLLogEntry::create);
    return new ParseXMLLogEntry(QString(), QString(), 0, 0);
}
