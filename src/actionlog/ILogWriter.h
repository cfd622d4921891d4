#pragma once

#include <Vokit/IInterface>

namespace vo {

class LogEntry;
class LogValue;

/// Takes entries piece by piece, as LogEntry::writeTo() hands them over. Nothing reports a failure.
class VOKIT_EXPORT ILogWriter : public IInterface
{
public:
    virtual void writeStartDocument() = 0;
    virtual void writeEndDocument() = 0;
    virtual void writeStartElement(const LogEntry &entry) = 0;
    virtual void writeEndElement(const LogEntry &entry) = 0;
    virtual void writeAttribute(const LogValue &value) = 0;
};

} // namespace vo
