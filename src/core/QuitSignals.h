#pragma once

#include <QObject>

/// Turns SIGTERM, SIGINT and SIGHUP into a Qt signal, so that the program ends cleanly when the
/// session or a terminal ends it. At most one object at a time; main thread.
class QuitSignals : public QObject {
    Q_OBJECT

public:
    explicit QuitSignals(QObject *parent);
    ~QuitSignals() override;

signals:
    void quitRequested();

private:
    void drain();
};
