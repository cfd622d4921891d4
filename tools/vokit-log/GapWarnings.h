#pragma once

#include "EntrySink.h"

/// Where gaps have no place of their own: a warning for each of the first ones of a file, and their
/// number at its end.
class GapWarnings : public EntrySink
{
public:
    void beginFile(const QString &name) override;
    void gap(const vo::VolGap &gap) override;
    void endFile(const vo::VolFile &file) override;

protected:
    const QString &fileName() const { return m_fileName; }

private:
    QString m_fileName;
    qint64 m_count = 0;
};
