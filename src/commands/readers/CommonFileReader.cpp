#include "commands/readers/CommonFileReader.h"

#include "commands/readers/ReadingLimits.h"
#include "core/Exception.h"

#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QTextCodec>
#include <QTextStream>

namespace {

constexpr int AsciiMib = 3;
constexpr int Utf8Mib = 106;

bool isUtf8(const QByteArray &bytes) {
    QTextCodec::ConverterState state;
    QTextCodec::codecForMib(Utf8Mib)->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

/// For a file without a byte order mark.
QTextCodec *codecOf(const QByteArray &bytes) {
    if (isUtf8(bytes))
        return QTextCodec::codecForMib(Utf8Mib);
    QTextCodec *locale = QTextCodec::codecForLocale();
    if (locale->mibEnum() != Utf8Mib && locale->mibEnum() != AsciiMib)
        return locale;
    // What older systems wrote Russian in.
    return QTextCodec::codecForName("windows-1251");
}

} // namespace

QString CommonFileReader::ReadFile(const QString &path, QString *error) {
    const QFileInfo info(path);
    if (!info.exists()) {
        *error = tr("Файла не существует");
        return QString();
    }
    QFile file(path);
    // To open a pipe would wait for whoever writes into it; a device may never end.
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) {
        *error = tr("Не удалось открыть файл");
        return QString();
    }
    try {
        const QByteArray bytes = file.read(ReadingLimits::TextSize + 1);
        if (bytes.size() > ReadingLimits::TextSize) {
            *error = ReadingLimits::tooLarge();
            return QString();
        }
        if (file.error() != QFileDevice::NoError)
            throw Exception(file.errorString());
        const QFileInfo now(path);
        if (now.size() != info.size() || now.lastModified() != info.lastModified())
            throw Exception("The file has changed meanwhile");
        QTextStream stream(bytes);
        stream.setCodec(codecOf(bytes));
        // Not by the device's text mode, which drops every carriage return.
        return stream.readAll().replace(QLatin1String("\r\n"), QLatin1String("\n"));
    } catch (const std::exception &failure) {
        qWarning() << "Read file error:" << failure.what();
        *error = ReadingLimits::unreadable();
        return QString();
    }
}
