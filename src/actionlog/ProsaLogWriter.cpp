#include <Vokit/ProsaLogWriter>

#include <Vokit/LogEntry>

#include <QTextStream>

namespace vo {

ProsaLogWriter::ProsaLogWriter(QTextStream &stream, char separator)
    : LogWriter(&stream)
    , mSeparator(separator)
{}

ProsaLogWriter::~ProsaLogWriter() = default;

void ProsaLogWriter::writeStartDocument() {}

void ProsaLogWriter::writeEndDocument() {}

void ProsaLogWriter::writeStartElement(const LogEntry & /*entry*/) {}

void ProsaLogWriter::writeEndElement(const LogEntry &entry)
{
    *mStream << entry.action() << Qt::endl;
}

void ProsaLogWriter::writeAttribute(const LogValue &value)
{
    *mStream << value.name() << ": ";
    value.writeTo(*mStream) << mSeparator;
}

} // namespace vo
