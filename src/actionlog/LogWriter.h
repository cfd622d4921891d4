#pragma once

#include <Vokit/ILogWriter>

#include <QString>

class QTextStream;

namespace vo {

/// What the writers have in common: a stream of the caller's, and what the start of a document
/// tells of its origin.
class VOKIT_EXPORT LogWriter : public ILogWriter
{
public:
    ~LogWriter() override;

    void setStartDocumentName(const QString &name);
    void setAppVersion(const QString &version);
    void setLngVersion(const QString &version);

protected:
    /// @param stream not owned; may be null where a writer needs none
    explicit LogWriter(QTextStream *stream);

    QTextStream *const mStream;
    QString mStartDocumentName;
    QString mAppVersion;
    QString mLngVersion;
};

} // namespace vo
