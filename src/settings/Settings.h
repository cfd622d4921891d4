#pragma once

#include <Vokit/IPersistDestination>

#include <QSettings>

namespace vo {

/**
 * The destination that is a QSettings: every operation goes straight to it.
 *
 * @code
 * vo::Settings settings("/etc/client.ini", QSettings::IniFormat);
 * settings.beginGroup("Cameras");
 * settings.setValue("Count", 16);
 * settings.endGroup();
 * @endcode
 *
 * The rules of QSettings apply: on when a write reaches the disk (never by a sync() of our own), on
 * threads (one Settings belongs to one at a time), on failures (a key that can't be read gives the
 * default), and on types: an INI file that another process wrote gives numbers and bools as texts,
 * which QVariant::toInt() and toBool() read.
 */
class VOKIT_EXPORT Settings : public IPersistDestination
{
public:
    /// The store of the running application, by the organisation and the name it has set.
    Settings();
    Settings(const QString &fileName, QSettings::Format format);
    /// @param settings stays the caller's, must not be null, and must outlive this object
    explicit Settings(QSettings *settings);
    /// Deletes the QSettings, unless it is the caller's.
    ~Settings() override;

    Settings(const Settings &) = delete;
    Settings &operator=(const Settings &) = delete;

    void beginGroup(const QString &prefix) override;
    void endGroup() override;
    void beginWriteArray(const QString &prefix, int size) override;
    int beginReadArray(const QString &prefix) override;
    void endArray() override;
    void setArrayIndex(int index) override;
    void setValue(const QString &key, const QVariant &value) override;
    QVariant value(const QString &key, const QVariant &defaultValue) const override;
    void remove(const QString &key) override;
    bool contains(const QString &key) const override;
    void sync() override;

    QString fileName() const;

private:
    QSettings *m_settings;
    bool m_ownsSettings;
};

} // namespace vo
