#pragma once

#include "core/Exception.h"

#include <QByteArray>
#include <QDomDocument>
#include <QString>

/// The part of an OpenDocument archive that holds the text.
namespace OpenDocumentContent {

/// The bytes of "content.xml".
/// @throws Exception  the file is no archive or has no such part, or either is too large
QByteArray unzip(const QString &path);

/// An empty document for what is no well-formed XML. White space between paragraphs is left out,
/// within them it is kept.
/// @throws Exception  too much, or too deep
QDomDocument parse(const QByteArray &content);

} // namespace OpenDocumentContent
