#include <VokitExtras/VolWriter>

#include <VokitExtras/VolEntry>
#include <VokitExtras/VolHeader>

#include <QDateTime>
#include <QIODevice>

namespace vo {

VolWriter::VolWriter(QIODevice *device)
    : m_device(device)
{}

bool VolWriter::writeStart(const VolHeader &header)
{
    QByteArray start = R"(<?xml version="1.0" encoding="UTF-8"?>)";
    if (header.isNull()) {
        start += R"(<Entries Version="v0.1" LogFile="" Date=")" +
                 QDateTime::currentDateTime().toString(Qt::ISODate).toLatin1() + '"';
    } else {
        start += header.bytes().trimmed();
        if (start.endsWith('>'))
            start.chop(start.endsWith("/>") ? 2 : 1);
    }
    return write(start + '>');
}

bool VolWriter::write(const VolEntry &entry)
{
    return write(entry.wellFormedBytes());
}

bool VolWriter::writeEnd()
{
    return write(QByteArray("</Entries>\n"));
}

bool VolWriter::write(const QByteArray &bytes)
{
    return m_device->write(bytes) == bytes.size();
}

} // namespace vo
