#pragma once

#include <QObject>
#include <QString>

/// Turns a document on disk into plain text. Blocks its caller while it reads.
class BaseFileReader : public QObject {
    Q_OBJECT

public:
    /// @param error  the message for the user; untouched on success
    /// @return the text, empty on failure
    virtual QString ReadFile(const QString &path, QString *error) = 0;
};
