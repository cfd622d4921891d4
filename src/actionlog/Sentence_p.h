#pragma once

#include <Vokit/vokit_export.h>

#include <QString>

namespace vo {

/**
 * The sentence that describes an entry, filled in value by value: each one fills the lowest
 * placeholder that is left, those that came in with a value before included.
 *
 * So placeholders in values multiply each other, and a few hundred bytes may become gigabytes. The
 * value that would make the sentence longer than all values once and a million characters is not
 * filled in, nor is what follows.
 */
class VOKIT_EXPORT Sentence // for VokitExtras
{
public:
    explicit Sentence(const QString &text)
        : m_text(text)
        , m_filledOnce(text.size())
    {}

    const QString &text() const { return m_text; }
    /// Whether there may be a place for another value.
    bool takesMore() const { return !m_isFull && m_text.contains(QLatin1Char('%')); }
    /// If it takes more.
    void fillIn(const QString &value);

private:
    QString m_text;
    qint64 m_filledOnce; ///< its size if each value stood there once
    bool m_isFull = false;
};

} // namespace vo
