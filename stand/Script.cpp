#include "stand/Script.h"

#include "core/Exception.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

const QString kAtBytes = QStringLiteral("atBytes");
const QString kAtStop = QStringLiteral("atStop");
const QString kDo = QStringLiteral("do");
const QString kFinal = QStringLiteral("final");
const QString kStart = QStringLiteral("start");
const QString kSteps = QStringLiteral("steps");
const QString kText = QStringLiteral("text");

void require(bool condition, const QString &complaint) {
    if (!condition)
        throw Exception(complaint);
}

/// @throws Exception  the key is there and is no array
QJsonArray arrayOf(const QJsonObject &object, const QString &key) {
    const QJsonValue value = object[key];
    require(value.isUndefined() || value.isArray(),
            QStringLiteral("\"%1\" is not an array").arg(key));
    return value.toArray();
}

Script::Step readStep(const QJsonObject &object, qint64 lastBytes) {
    Script::Step step;
    step.atStop = object[kAtStop].toBool();
    require(step.atStop != object.contains(kAtBytes),
            QStringLiteral("one of \"atBytes\" and \"atStop\": true is wanted"));
    if (!step.atStop) {
        const double bytes = object[kAtBytes].toDouble(-1);
        require(bytes >= static_cast<double>(lastBytes) && bytes < 1e15,
                QStringLiteral("\"atBytes\" is not a number, or less than in the step before"));
        step.atBytes = static_cast<qint64>(bytes);
    }
    const bool isCommand = object[kDo].isString();
    require(isCommand || object[kText].isString(),
            QStringLiteral("neither a text in \"text\" nor a command in \"do\""));
    require(!object.contains(kFinal) || object[kFinal].isBool(),
            QStringLiteral("\"final\" is neither true nor false"));
    if (isCommand) {
        step.command = object;
        return step;
    }
    step.text = object[kText].toString();
    step.isFinal = object[kFinal].toBool(true);
    return step;
}

} // namespace

Script Script::load(const QString &fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        throw Exception(
            QStringLiteral("cannot read the script %1: %2").arg(fileName, file.errorString()));
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError) {
        throw Exception(QStringLiteral("the script %1 is not JSON: %2 at byte %3")
                            .arg(fileName, error.errorString())
                            .arg(error.offset));
    }
    if (!document.isObject())
        throw Exception(QStringLiteral("the script %1 is not a JSON object").arg(fileName));
    try {
        return fromJson(document.object());
    } catch (const Exception &problem) {
        throw Exception(
            QStringLiteral("the script %1: %2").arg(fileName, QString::fromUtf8(problem.what())));
    }
}

Script Script::fromJson(const QJsonObject &object) {
    // A misspelt key would otherwise make a script that silently does nothing.
    for (const QString &key : object.keys())
        require(key == kStart || key == kSteps, QStringLiteral("unknown key \"%1\"").arg(key));

    Script script;
    for (const QJsonValue &value : arrayOf(object, kStart)) {
        require(value.toObject()[kDo].isString(), QStringLiteral("a start command without \"do\""));
        script.m_startCommands.push_back(value.toObject());
    }
    qint64 lastBytes = 0;
    for (const QJsonValue &value : arrayOf(object, kSteps)) {
        try {
            script.m_steps.push_back(readStep(value.toObject(), lastBytes));
        } catch (const Exception &problem) {
            throw Exception(QStringLiteral("step %1: %2")
                                .arg(script.m_steps.size() + 1)
                                .arg(QString::fromUtf8(problem.what())));
        }
        lastBytes = qMax(lastBytes, script.m_steps.back().atBytes);
    }
    return script;
}
