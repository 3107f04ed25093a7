#pragma once

#include "commands/readers/BaseElementReader.h"
#include "commands/readers/ElementReaderFactory.h"

#include <QString>

#include <map>
#include <memory>

class QDomNode;

/// Names the reader of an element of OpenDocument, and owns the readers.
class OpenDocumentElementReaderFactory : public ElementReaderFactory {
public:
    OpenDocumentElementReaderFactory();

    /// @return null for an element that is not of the text namespace
    const BaseElementReader *GetElementReader(const QDomNode &node) const;

    static QString textNamespace();

private:
    /// By local name in lower case.
    std::map<QString, std::unique_ptr<BaseElementReader>> m_readers;
    BaseElementReader m_defaultReader;
};
