#pragma once

#include <QDir>
#include <QFile>

/// What a running process holds; all zero if there is none.
struct ProcessUsage {
    explicit ProcessUsage(qint64 processId) {
        const QString folder = QString("/proc/%1/").arg(processId);
        handles = int(QDir(folder + "fd")
                          .entryList(QDir::System | QDir::AllEntries | QDir::NoDotAndDotDot)
                          .size());
        QFile status(folder + "status");
        if (!status.open(QIODevice::ReadOnly))
            return;
        for (const QByteArray &line : status.readAll().split('\n')) {
            const QByteArray value = line.mid(line.indexOf(':') + 1).simplified();
            if (line.startsWith("VmRSS:"))
                residentKb = value.split(' ').first().toLongLong();
            else if (line.startsWith("Threads:"))
                threads = value.toInt();
        }
    }

    qint64 residentKb = 0;
    int threads = 0;
    int handles = 0; ///< open file handles
};
