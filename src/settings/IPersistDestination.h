#pragma once

#include <Vokit/IInterface>

#include <QString>
#include <QVariant>

namespace vo {

/**
 * Where a class persists itself: keys and values, in groups and arrays.
 *
 * Each operation means what the one of the same name means in QSettings, whatever lies below:
 * beginGroup() and endGroup() nest and come in pairs, as do the begin of an array and endArray().
 * A class that persists itself works in a group of its own, and leaves it open for nobody. When a
 * value reaches the disk is the destination's affair, and sync() that of its owner.
 *
 * Nothing here reports a failure: what is not there reads as the default.
 */
class VOKIT_EXPORT IPersistDestination : public IInterface
{
public:
    virtual void beginGroup(const QString &prefix) = 0;
    virtual void endGroup() = 0;
    /// @param size the number of entries, or -1 to have it found from the indexes used
    virtual void beginWriteArray(const QString &prefix, int size) = 0;
    /// @return the number of entries; 0 for an array that is not there
    virtual int beginReadArray(const QString &prefix) = 0;
    virtual void endArray() = 0;
    /// @param index from 0; all that is set and read from here on belongs to this entry
    virtual void setArrayIndex(int index) = 0;
    virtual void setValue(const QString &key, const QVariant &value) = 0;
    virtual QVariant value(const QString &key, const QVariant &defaultValue) const = 0;
    /// Removes the key and all below it; an empty key removes the whole of the current group.
    virtual void remove(const QString &key) = 0;
    virtual bool contains(const QString &key) const = 0;
    virtual void sync() = 0;
};

} // namespace vo
