#pragma once

#include <Vokit/IPersistDestination>

#include <QMap>
#include <QStringList>

namespace test {

/// A destination in memory. It tells what was asked of it, and under which full keys.
class RecordedDestination : public vo::IPersistDestination
{
public:
    /// The calls that change something or move, such as "setValue Group/Key".
    QStringList calls;
    QMap<QString, QVariant> values;

    void beginGroup(const QString &prefix) override
    {
        calls << "beginGroup " + prefix;
        m_path << prefix;
    }
    void endGroup() override
    {
        calls << "endGroup";
        m_path.removeLast();
    }
    void beginWriteArray(const QString &prefix, int size) override
    {
        calls << "beginWriteArray " + prefix;
        values[full(prefix) + "/size"] = size;
        m_path << prefix << QString();
    }
    int beginReadArray(const QString &prefix) override
    {
        calls << "beginReadArray " + prefix;
        const int size = values.value(full(prefix) + "/size").toInt();
        m_path << prefix << QString();
        return size;
    }
    void endArray() override
    {
        calls << "endArray";
        m_path.removeLast();
        m_path.removeLast();
    }
    void setArrayIndex(int index) override
    {
        calls << "setArrayIndex " + QString::number(index);
        m_path.last() = QString::number(index + 1);
    }
    void setValue(const QString &key, const QVariant &value) override
    {
        calls << "setValue " + full(key);
        values[full(key)] = value;
    }
    QVariant value(const QString &key, const QVariant &defaultValue) const override
    {
        return values.value(full(key), defaultValue);
    }
    void remove(const QString &key) override
    {
        calls << "remove " + full(key);
        const QString below = full(key) + '/';
        for (const QString &name : values.keys()) {
            if (name == full(key) || name.startsWith(below))
                values.remove(name);
        }
    }
    bool contains(const QString &key) const override { return values.contains(full(key)); }
    void sync() override { calls << "sync"; }

private:
    QString full(const QString &key) const { return (m_path + QStringList(key)).join('/'); }

    QStringList m_path;
};

} // namespace test
