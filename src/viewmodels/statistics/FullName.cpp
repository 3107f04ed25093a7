#include "viewmodels/statistics/FullName.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace {

constexpr int longestName = 255;

QString tr(const char *text) {
    return QCoreApplication::translate("FullName", text);
}

/// A word, perhaps joined of several, perhaps in brackets; an initial; a Roman number.
bool isPartOfName(const QString &part) {
    // Anchored, since "$" would let a line feed pass behind the name.
    static const QRegularExpression expression(QRegularExpression::anchoredPattern(QStringLiteral(
        "^((\\([А-яЁё]+([-–`][А-яЁё]+)*\\))|([А-яЁё]+([-–`][А-яЁё]+)*)|([А-яЁё]\\.*)|[IV]+)$")));
    return expression.match(part).hasMatch();
}

QString errorOf(const QString &name) {
    if (name.isEmpty())
        return tr("Поле обязательно для заполнения!");
    if (name.size() > longestName)
        return tr("ФИО не может превышать 255 символов");
    const int brackets = name.count(QLatin1Char('(')) - name.count(QLatin1Char(')'));
    if (brackets > 0)
        return tr("Пропущена закрывающая скобка");
    if (brackets < 0)
        return tr("Не проставлена открывающая скобка");
    const QStringList parts = name.split(QLatin1Char(' '));
    if (parts.contains(QString()))
        return tr("Каждое слово должно быть разделено одним пробелом, без лишних пробелов в "
                  "начале или в конце");
    if (parts.size() < 2)
        return tr("Укажите ФИО полностью");
    if (!std::all_of(parts.begin(), parts.end(), isPartOfName))
        return tr("Некорректное ФИО");
    return QString();
}

} // namespace

void FullName::Validate(ValidatableText::ValidationArgs *args) {
    args->error = errorOf(args->text);
}
