#pragma once

#include <QFile>
#include <QXmlStreamReader>

namespace test {

/// One message of a .ts file.
struct Message
{
    QString context;
    QString source;
    QString translation;
    bool isFinished = true;
};

/// A .ts file as it is written, in its order; empty and with an error if it can't be read.
class TsFile
{
public:
    explicit TsFile(const QString &path)
    {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        QXmlStreamReader xml(&file);
        QString context;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            if (xml.name() == "TS")
                language = xml.attributes().value("language").toString();
            else if (xml.name() == "name")
                context = xml.readElementText();
            else if (xml.name() == "message")
                messages.append({context, {}, {}, true});
            else if (xml.name() == "source")
                messages.last().source = xml.readElementText();
            else if (xml.name() == "translation") {
                messages.last().isFinished = xml.attributes().isEmpty();
                messages.last().translation = xml.readElementText();
            }
        }
        error = xml.hasError() ? path + ": " + xml.errorString() : QString();
    }

    QString language;
    QList<Message> messages;
    QString error;
};

} // namespace test
