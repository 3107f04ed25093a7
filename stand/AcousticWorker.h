#pragma once

#include "stand/SphinxDecoder.h"

#include <QObject>

#include <memory>

/// The part of the acoustic engine that lives on the engine's own thread. It loads the model at
/// its first start.
class AcousticWorker : public QObject {
    Q_OBJECT

public:
    explicit AcousticWorker(const QString &folder) : m_folder(folder) {}

    void start();
    void feed(const QByteArray &sound);
    void finish();
    void setPunctuation(bool on) { m_punctuation = on; }

signals:
    void partialText(const QString &text);
    void finalText(const QString &text);
    void finished();
    void failed(const QString &reason);

private:
    void tellFinal(const QString &text);
    QString written(const QString &text) const;

    const QString m_folder;
    std::unique_ptr<SphinxDecoder> m_decoder;
    bool m_punctuation = false;
};
