#include "commands/readers/OpenDocumentElementReaderFactory.h"

#include "commands/readers/ParagraphElementReader.h"
#include "commands/readers/SpaceElementReader.h"
#include "commands/readers/TabElementReader.h"

#include <QDomNode>

OpenDocumentElementReaderFactory::OpenDocumentElementReaderFactory() {
    for (const char *name : {"p", "h", "line-break"})
        m_readers[QLatin1String(name)] = std::make_unique<ParagraphElementReader>();
    m_readers[QStringLiteral("s")] = std::make_unique<SpaceElementReader>();
    m_readers[QStringLiteral("tab")] = std::make_unique<TabElementReader>();
}

QString OpenDocumentElementReaderFactory::textNamespace() {
    return QStringLiteral("urn:oasis:names:tc:opendocument:xmlns:text:1.0");
}

const BaseElementReader *
OpenDocumentElementReaderFactory::GetElementReader(const QDomNode &node) const {
    if (node.namespaceURI() != textNamespace())
        return nullptr;
    const auto reader = m_readers.find(node.localName().toLower());
    return reader == m_readers.cend() ? &m_defaultReader : reader->second.get();
}
