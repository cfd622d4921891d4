#include "LogContestant.h"

#include <log4cxx/fileappender.h>
#include <log4cxx/logger.h>
#include <log4cxx/xml/xmllayout.h>

#include <QXmlStreamReader>

namespace {

class Log4cxxSink : public LogSink
{
public:
    explicit Log4cxxSink(const QString &directory)
        : m_appender(std::make_shared<log4cxx::FileAppender>(
              std::make_shared<log4cxx::xml::XMLLayout>(),
              (directory + QStringLiteral("/log.xml")).toStdString(), false, false, 0))
        , m_logger(log4cxx::Logger::getLogger("bench"))
    {
        m_logger->setAdditivity(false);
        m_logger->setLevel(log4cxx::Level::getInfo());
        m_logger->addAppender(m_appender);
    }
    ~Log4cxxSink() override
    {
        m_logger->removeAppender(m_appender);
        m_appender->close();
    }

    void append(std::size_t index) override { m_logger->info(preparedExports().lines[index]); }

private:
    const log4cxx::FileAppenderPtr m_appender;
    const log4cxx::LoggerPtr m_logger;
};

// The layout leaves the root, and the name space with it, to whoever reads.
QStringList readMessages(const QByteArray &file)
{
    QStringList lines;
    QXmlStreamReader reader("<log xmlns:log4j=\"log4j\">" + file + "</log>");
    while (reader.readNext() != QXmlStreamReader::Invalid && !reader.isEndDocument()) {
        if (reader.isStartElement() && reader.name() == QLatin1String("message"))
            lines.append(reader.readElementText());
    }
    return reader.hasError() ? QStringList() : lines;
}

const bool gAdded = addContestant(
    {"log/log4cxx_xml",
     [](const QString &directory) { return std::make_unique<Log4cxxSink>(directory); },
     readMessages});

} // namespace
