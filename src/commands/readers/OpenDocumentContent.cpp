#include "commands/readers/OpenDocumentContent.h"

#include "commands/readers/OpenDocumentElementReaderFactory.h"
#include "commands/readers/ReadingLimits.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

#include <memory>
#include <zip.h>

namespace {

struct ArchiveCloser {
    void operator()(zip_t *archive) const { zip_discard(archive); }
};
struct PartCloser {
    void operator()(zip_file_t *part) const { zip_fclose(part); }
};
using Archive = std::unique_ptr<zip_t, ArchiveCloser>;
using Part = std::unique_ptr<zip_file_t, PartCloser>;

Exception unreadable() {
    return Exception(QStringLiteral("Error While Reading the File"));
}

/// Builds the document node by node. QDomDocument itself would drop every text that is only white
/// space, and glue the words around it together.
class DocumentBuilder {
public:
    explicit DocumentBuilder(const QByteArray &content) : m_reader(content) {}

    QDomDocument build() {
        while (!m_reader.atEnd())
            take(m_reader.readNext());
        if (!m_reader.hasError())
            return m_document;
        qWarning() << "Document is not well-formed:" << m_reader.errorString();
        return QDomDocument();
    }

private:
    void take(QXmlStreamReader::TokenType token) {
        switch (token) {
        case QXmlStreamReader::StartElement:
            startElement();
            break;
        case QXmlStreamReader::EndElement:
            endElement();
            break;
        case QXmlStreamReader::DTD:
            // No document of this format has any, but bombs do.
            if (!m_reader.entityDeclarations().isEmpty())
                throw unreadable();
            break;
        case QXmlStreamReader::Characters:
            appendText();
            break;
        default:
            break;
        }
    }

    // Blanks between the words of a paragraph count, a line break of an indented file is one.
    void appendText() {
        if (!m_reader.isWhitespace())
            append(m_document.createTextNode(m_reader.text().toString()));
        else if (m_depthInParagraph > 0)
            append(m_document.createTextNode(QStringLiteral(" ")));
    }

    void startElement() {
        const QString name = m_reader.name().toString().toLower();
        const bool isParagraph =
            m_reader.namespaceUri() == OpenDocumentElementReaderFactory::textNamespace() &&
            (name == QLatin1String("p") || name == QLatin1String("h"));
        if (m_depthInParagraph > 0 || isParagraph)
            ++m_depthInParagraph;
        if (++m_depth > ReadingLimits::Depth)
            throw Exception(ReadingLimits::tooLarge());
        m_parent = append(m_document.createElementNS(m_reader.namespaceUri().toString(),
                                                     m_reader.qualifiedName().toString()));
    }

    void endElement() {
        m_parent = m_parent.parentNode();
        --m_depth;
        if (m_depthInParagraph > 0)
            --m_depthInParagraph;
    }

    QDomNode append(const QDomNode &node) {
        if (++m_nodes > ReadingLimits::Nodes)
            throw Exception(ReadingLimits::tooLarge());
        return m_parent.appendChild(node);
    }

    QXmlStreamReader m_reader;
    // With a name, because without one it holds nothing that could be appended to.
    QDomDocument m_document{QStringLiteral("content")};
    QDomNode m_parent = m_document;
    int m_depth = 0;
    int m_depthInParagraph = 0;
    int m_nodes = 0;
};

} // namespace

QByteArray OpenDocumentContent::unzip(const QString &path) {
    const QFileInfo info(path);
    if (!info.isFile())
        throw unreadable();
    if (info.size() > ReadingLimits::ArchiveBytes)
        throw Exception(ReadingLimits::tooLarge());
    int code = 0;
    const Archive archive(zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY, &code));
    if (!archive)
        throw unreadable();
    const Part part(zip_fopen(archive.get(), "content.xml", 0));
    if (!part)
        throw unreadable();
    // The size that the archive tells is not to be trusted.
    QByteArray content;
    QByteArray block(64 * 1024, Qt::Uninitialized);
    for (;;) {
        const zip_int64_t count =
            zip_fread(part.get(), block.data(), static_cast<zip_uint64_t>(block.size()));
        if (count < 0)
            throw unreadable();
        if (count == 0)
            return content;
        content.append(block.constData(), static_cast<int>(count));
        if (content.size() > ReadingLimits::ContentBytes)
            throw Exception(ReadingLimits::tooLarge());
    }
}

QDomDocument OpenDocumentContent::parse(const QByteArray &content) {
    return DocumentBuilder(content).build();
}
