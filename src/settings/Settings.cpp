#include <Vokit/Settings>

namespace vo {

Settings::Settings()
    : m_settings(new QSettings)
    , m_ownsSettings(true)
{}

Settings::Settings(const QString &fileName, QSettings::Format format)
    : m_settings(new QSettings(fileName, format))
    , m_ownsSettings(true)
{}

Settings::Settings(QSettings *settings)
    : m_settings(settings)
    , m_ownsSettings(false)
{}

Settings::~Settings()
{
    if (m_ownsSettings)
        delete m_settings;
}

void Settings::beginGroup(const QString &prefix)
{
    m_settings->beginGroup(prefix);
}

void Settings::endGroup()
{
    m_settings->endGroup();
}

void Settings::beginWriteArray(const QString &prefix, int size)
{
    m_settings->beginWriteArray(prefix, size);
}

int Settings::beginReadArray(const QString &prefix)
{
    return m_settings->beginReadArray(prefix);
}

void Settings::endArray()
{
    m_settings->endArray();
}

void Settings::setArrayIndex(int index)
{
    m_settings->setArrayIndex(index);
}

void Settings::setValue(const QString &key, const QVariant &value)
{
    m_settings->setValue(key, value);
}

QVariant Settings::value(const QString &key, const QVariant &defaultValue) const
{
    return m_settings->value(key, defaultValue);
}

void Settings::remove(const QString &key)
{
    m_settings->remove(key);
}

bool Settings::contains(const QString &key) const
{
    return m_settings->contains(key);
}

void Settings::sync()
{
    m_settings->sync();
}

QString Settings::fileName() const
{
    return m_settings->fileName();
}

} // namespace vo
