#pragma once

#include <Vokit/LogWriter>

namespace vo {

/**
 * Writes entries as prose, a line for each: "Time: ...|User: ...|text: ...|Export start" with the
 * separator "|".
 *
 * A value without content is written with its name all the same.
 */
class VOKIT_EXPORT ProsaLogWriter : public LogWriter
{
public:
    /// @param separator stands behind each value
    ProsaLogWriter(QTextStream &stream, char separator);
    ~ProsaLogWriter() override;

    void writeStartDocument() override;
    void writeEndDocument() override;
    void writeStartElement(const LogEntry &entry) override;
    /// The words for the action, and the end of the line.
    void writeEndElement(const LogEntry &entry) override;
    void writeAttribute(const LogValue &value) override;

private:
    char mSeparator;
};

} // namespace vo
