#include "stand/SpokenMarks.h"

#include <QMap>
#include <QRegularExpression>
#include <QStringList>

namespace {

/// A dash or an opening quote wants the word before it without a blank: the client sets one.
const QMap<QString, QString> &marks() {
    static const QMap<QString, QString> table{
        {QStringLiteral("точка с запятой"), QStringLiteral(" ;")},
        {QStringLiteral("точка"), QStringLiteral(" .")},
        {QStringLiteral("запятая"), QStringLiteral(" ,")},
        {QStringLiteral("двоеточие"), QStringLiteral(" :")},
        {QStringLiteral("вопросительный знак"), QStringLiteral(" ?")},
        {QStringLiteral("восклицательный знак"), QStringLiteral(" !")},
        {QStringLiteral("открыть скобку"), QStringLiteral(" (")},
        {QStringLiteral("закрыть скобку"), QStringLiteral(" )")},
        {QStringLiteral("тире"), QStringLiteral("\u0001")},
        {QStringLiteral("открыть кавычки"), QStringLiteral("\u0002")},
        {QStringLiteral("закрыть кавычки"), QStringLiteral("\u0003")},
        {QStringLiteral("новая строка"), QStringLiteral(" \u00B6")},
        {QStringLiteral("новый абзац"), QStringLiteral(" \u00B6")},
    };
    return table;
}

/// Any of the names, longer names first.
QRegularExpression anyName() {
    QStringList names = marks().keys();
    std::sort(names.begin(), names.end(),
              [](const QString &a, const QString &b) { return a.size() > b.size(); });
    return QRegularExpression(QStringLiteral("\\s*\\b(%1)\\b").arg(names.join(QLatin1Char('|'))),
                              QRegularExpression::UseUnicodePropertiesOption);
}

} // namespace

QString withSpokenMarks(const QString &text) {
    static const QRegularExpression expression = anyName();
    QString result;
    int copied = 0;
    auto matches = expression.globalMatch(text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        result += text.midRef(copied, match.capturedStart() - copied);
        result += marks().value(match.captured(1));
        copied = match.capturedEnd();
    }
    result += text.midRef(copied);
    return result.startsWith(QLatin1Char(' ')) ? result.mid(1) : result;
}
