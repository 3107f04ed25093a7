#include "core/StartProblem.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QRegularExpression>
#include <QStandardPaths>

#include <cstdio>

void StartProblem::tellConsole(const QString &text) {
    std::fprintf(stderr, "Vellumar: %s\n", text.toUtf8().constData());
}

int StartProblem::tell(const QString &text) {
    tellConsole(text);
    qCritical().noquote() << "Cannot start:" << text;
    QMessageBox::critical(nullptr, tr("Ошибка"), text, QMessageBox::Ok);
    return Status;
}

QString StartProblem::ofFolders() {
    const auto locations = {QStandardPaths::AppConfigLocation, QStandardPaths::AppDataLocation};
    for (const auto location : locations) {
        const QString folder = QStandardPaths::writableLocation(location);
        if (QDir().mkpath(folder) && QFileInfo(folder).isWritable())
            continue;
        return tr("Нет прав на запись в папку «%1»: программе негде хранить настройки, команды и "
                  "журнал. Дайте на неё права или исправьте переменные HOME, XDG_CONFIG_HOME и "
                  "XDG_DATA_HOME.")
            .arg(folder);
    }
    return QString();
}

QString StartProblem::ofInterface(const QList<QQmlError> &errors) {
    static const QRegularExpression missing(
        QStringLiteral("module \"([^\"]+)\" (version \\S+ )?is not installed"));
    QStringList lines;
    for (const QQmlError &error : errors) {
        const QRegularExpressionMatch match = missing.match(error.description());
        if (match.hasMatch()) {
            return tr("Не удалось загрузить окна программы: не установлен модуль QML «%1». "
                      "Установите его пакет (в Debian и Ubuntu имя начинается с %2) и запустите "
                      "программу снова.")
                .arg(match.captured(1),
                     QStringLiteral("qml-module-") + match.captured(1).toLower().replace('.', '-'));
        }
        lines << error.toString();
    }
    return tr("Не удалось загрузить окна программы. Установите её заново или обратитесь к "
              "системному администратору.") +
           QStringLiteral("\n\n") + lines.join(QLatin1Char('\n'));
}
