#pragma once

#include <VokitExtras/VolElement>

#include <memory>
#include <utility>

namespace vo {

class LogEntry;

/// One entry of a log file, of a class that may be unknown to this process.
class VOKIT_EXTRAS_EXPORT VolEntry : public VolElement
{
public:
    /// What its class is registered under; four blanks for a null entry.
    FourChars id() const;

    /// Whether logEntryFactory() knows the class.
    bool isKnown() const;

    /// The entry that XMLLogReader would read; null for an unknown class. Not the text counts here
    /// but the class: what stands behind a value that it doesn't have is left out.
    std::unique_ptr<LogEntry> toLogEntry() const;

    /**
     * Whether XML allows all of it.
     *
     * An identifier may hold what XML allows in no name, as that of the source of a renamed export
     * does, and the log writes it all the same. Such an entry is whole if this process knows its
     * class, and that has the identifier, while XMLLogReader stops at it.
     */
    bool isWellFormed() const;
    /// The bytes in a form that XMLLogReader reads: bytes() if they are well-formed. Else what XML
    /// doesn't allow goes out of the names, and those values stand last: the class doesn't know
    /// them under such a name, and nothing behind them would be read.
    QByteArray wellFormedBytes() const;

private:
    friend class VolScanner;

    bool hasLegalName(const Attribute &attribute) const;
    QByteArray legalName(const QByteArray &name, const QByteArray &others, LogEntry *entry) const;
    std::pair<int, int> oddName() const;
    bool hasStrayName() const;
};

} // namespace vo
