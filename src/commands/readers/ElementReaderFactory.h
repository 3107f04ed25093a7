#pragma once

/// Base of what names the reader of an element, a class for each format of documents.
class ElementReaderFactory {};
