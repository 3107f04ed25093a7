#pragma once

#include <QTranslator>

/// Gives Qt's own dialogs their Russian texts, as all other texts for the user have them. The
/// messages of Qt's errors stay English, because they go to the log. Main thread.
class DialogTranslator : public QTranslator {
    Q_OBJECT

public:
    /// Loads the texts; without them the dialogs are in English, and a log line says so.
    explicit DialogTranslator(QObject *parent = nullptr);

    QString translate(const char *context, const char *sourceText, const char *disambiguation,
                      int n) const override;
};
