#pragma once

#include "commands/readers/BaseFileReader.h"
#include "commands/readers/OpenDocumentElementReaderFactory.h"

#include <QStringList>

class QDomElement;

/// Reads the text of an OpenDocument Text. The archive is read in this process: nothing of a
/// patient's document is left in a temporary folder, and a bomb of an archive is cut short.
class OpenFileReader final : public BaseFileReader {
    Q_OBJECT

public:
    QString ReadFile(const QString &path, QString *error) override;

    /// Collects the text of an element and of those within, in the document's order.
    void ReadTextElement(QStringList *parts, const QDomElement &element) const;

private:
    OpenDocumentElementReaderFactory m_factory;
};
