#include <Vokit/LogWriter>

namespace vo {

LogWriter::LogWriter(QTextStream *stream)
    : mStream(stream)
{}

LogWriter::~LogWriter() = default;

void LogWriter::setStartDocumentName(const QString &name)
{
    mStartDocumentName = name;
}

void LogWriter::setAppVersion(const QString &version)
{
    mAppVersion = version;
}

void LogWriter::setLngVersion(const QString &version)
{
    mLngVersion = version;
}

} // namespace vo
