#pragma once

#include "commands/readers/CompositeFileReader.h"
#include "viewmodels/commands/CommandEditModel.h"

/// A spoken command that inserts the text of a document, with a look at it. Main thread, which
/// waits while a document is read.
class FileCopyEditModel : public CommandEditModel {
    Q_OBJECT
    Q_PROPERTY(ValidatableText *FilePath READ get_FilePath CONSTANT)
    /// The document's text, or why it cannot be read.
    Q_PROPERTY(QString PreviewText READ get_PreviewText NOTIFY changed_PreviewText)
    Q_PROPERTY(bool IsError READ get_IsError NOTIFY changed_IsError)

public:
    FileCopyEditModel(UserCommandViewModel *command, CommandsCollectionViewModel *collection);

    bool validate() override;
    void copyTo(UserCommandViewModel *command) override;

    ValidatableText *get_FilePath() { return &m_filePath; }
    QString get_PreviewText() const { return m_previewText; }
    bool get_IsError() const { return m_isError; }

    /// Lets the user choose the document.
    Q_INVOKABLE void selectFile();

signals:
    void changed_PreviewText(const QString &v);
    void changed_IsError(bool v);

private:
    static void ValidateFilePath(ValidatableText::ValidationArgs *args);
    void ReloadPreview(const QString &path);

    CompositeFileReader m_reader;
    ValidatableText m_filePath{this};
    QString m_previewText;
    bool m_isError = false;
};
