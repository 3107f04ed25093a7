#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

/// Turns sound into text. One engine serves one connection.
///
/// The sound is 16000 Hz, mono, 16-bit signed little-endian. All functions are called, and all
/// signals are emitted, on the thread that the engine was made on.
class RecognitionEngine : public QObject {
    Q_OBJECT

public:
    explicit RecognitionEngine(QObject *parent = nullptr) : QObject(parent) {}

    /// Begins a run: what was heard before is forgotten.
    virtual void start() = 0;
    virtual void feed(const QByteArray &sound) = 0;
    /// Ends the run. The last final text, if there is one, comes before finished().
    virtual void finish() = 0;
    /// Whether spoken names of punctuation marks come out as marks.
    virtual void setPunctuation(bool on) = 0;

signals:
    void partialText(const QString &text);
    void finalText(const QString &text);
    void finished();
    /// The engine cannot work; the reason is for the person who started the stand.
    void failed(const QString &reason);
};
