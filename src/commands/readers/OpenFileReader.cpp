#include "commands/readers/OpenFileReader.h"

#include "commands/readers/OpenDocumentContent.h"
#include "commands/readers/ReadingLimits.h"

#include <QDomDocument>

QString OpenFileReader::ReadFile(const QString &path, QString *error) {
    try {
        QStringList parts;
        const QDomDocument document = OpenDocumentContent::parse(OpenDocumentContent::unzip(path));
        ReadTextElement(&parts, document.documentElement());
        const QString text = parts.join(QString());
        if (text.size() > ReadingLimits::TextSize)
            throw Exception(ReadingLimits::tooLarge());
        return text;
    } catch (const std::exception &failure) {
        *error = QString::fromUtf8(failure.what());
    } catch (...) {
        *error = QStringLiteral("Can't read file");
    }
    return QString();
}

void OpenFileReader::ReadTextElement(QStringList *parts, const QDomElement &element) const {
    const BaseElementReader *reader = m_factory.GetElementReader(element);
    if (reader)
        parts->append(reader->GetPrefixText());
    for (QDomNode child = element.firstChild(); !child.isNull(); child = child.nextSibling()) {
        if (child.isElement())
            ReadTextElement(parts, child.toElement());
        else if (reader && child.isText())
            parts->append(child.nodeValue());
    }
    if (reader)
        parts->append(reader->GetPostfixText());
}
