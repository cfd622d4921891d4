#include <Vokit/XMLLogReader>

#include "actionlog/EntryClock_p.h"

#include <Vokit/LogEntryFactory>
#include <Vokit/ParseXMLLogEntry>

#include <QFile>

namespace vo {

XMLLogReader::XMLLogReader(QFile *file)
    : QXmlStreamReader(file)
    , mFile(file)
{}

XMLLogReader::~XMLLogReader() = default;

LogEntry *XMLLogReader::readNextLogEntry()
{
    QString problem = QStringLiteral("Unknown Error");
    int line = 0;
    int column = 0;
    while (!atEnd() && !failed()) {
        switch (readNext()) {
        case StartElement:
            if (++mDepth == 1)
                mEndOfWhole = characterOffset();
            if (name() == QLatin1String("Entry"))
                return entryOf(attributes());
            break;
        case EndElement:
            mRootClosed = --mDepth == 0;
            if (!mRootClosed)
                mEndOfWhole = characterOffset();
            break;
        case Comment:
        case ProcessingInstruction:
            if (mDepth > 0)
                mEndOfWhole = characterOffset();
            break;
        case Invalid:
            problem = errorString();
            line = static_cast<int>(lineNumber());
            column = static_cast<int>(columnNumber());
            break;
        default:
            break;
        }
    }
    if (!failed())
        return nullptr;
    auto *const entry = new ParseXMLLogEntry(
        problem, mFile ? mFile->fileName() : QStringLiteral("Unknown"), line, column);
    entry->setUser(QStringLiteral("Unknown"));
    return entry;
}

bool XMLLogReader::atEnd() const
{
    return mRootClosed || QXmlStreamReader::atEnd();
}

LogEntry *XMLLogReader::entryOf(const QXmlStreamAttributes &attributes)
{
    const EntryClock::Withheld dates;
    LogEntry *entry = nullptr;
    for (const QXmlStreamAttribute &attribute : attributes) {
        if (attribute.name() == QLatin1String("ID")) {
            delete entry;
            entry = logEntryFactory()->create(FourChars(attribute.value()));
        } else if (entry) {
            LogValue *const value = entry->logValue(FourChars(attribute.name()));
            if (!value)
                break;
            value->setValue(attribute.value().toString());
        }
    }
    if (entry)
        dates.supply(*entry);
    return entry;
}

// A live log has no end tag: that its text ends is no failure.
bool XMLLogReader::failed() const
{
    return error() != NoError && error() != PrematureEndOfDocumentError;
}

} // namespace vo
