#include "commands/AutoReplaceManager.h"

#include "commands/UserCommandsManager.h"
#include "core/Exception.h"
#include "core/settings/ASRSettings.h"
#include "recognition/AsrManager.h"

#include <QDebug>
#include <QMutexLocker>

#include <algorithm>

namespace {

std::optional<QRegularExpression> tryCreateRegexp(const QString &pattern) {
    try {
        return AutoReplaceManager::CreateRegexp(pattern);
    } catch (const std::exception &) {
        qInfo() << "A phrase that cannot be looked for, characters:" << pattern.size();
        qDebug().noquote().nospace()
            << "Error while create regexp: " << UserCommand::NormalizePattern(pattern);
        return std::nullopt;
    }
}

} // namespace

void AutoReplaceManager::set_Managers(AsrManager *asrManager,
                                      UserCommandsManager *commandsManager) {
    const QMutexLocker locker(&m_mutex);
    if (m_asrManager || m_commandsManager)
        throw Exception("AutoReplaceManager: Managers already set");
    m_asrManager = asrManager;
    m_commandsManager = commandsManager;
    connect(commandsManager, &UserCommandsManager::CommandsChanged, this,
            &AutoReplaceManager::RefreshAllTextCommands);
    connect(asrManager, &AsrManager::selectedThemeChanged, this,
            &AutoReplaceManager::asrThemeChanged);
    RefreshAllTextCommands();
}

QString AutoReplaceManager::ProcessText(const QString &text) const {
    QString result = text;
    const QList<Entry> entries = Process(text);
    for (auto entry = entries.crbegin(); entry != entries.crend(); ++entry)
        result.replace(entry->start, entry->length, entry->info.text);
    return result;
}

QList<AutoReplaceManager::Entry> AutoReplaceManager::Process(const QString &text) const {
    if (text.isEmpty())
        return {};
    QList<Entry> entries;
    // Without the lock: no result waits for a reload, nor a reload for a result.
    const QVector<Candidate> all = candidates(text);
    for (const Candidate &candidate : all) {
        auto matches = candidate.expression.globalMatch(text);
        while (matches.hasNext()) {
            const QRegularExpressionMatch match = matches.next();
            entries.append({candidate.info, match.capturedStart(QStringLiteral("Z")),
                            match.capturedLength(QStringLiteral("Z"))});
        }
    }
    // Of those that begin alike the longer phrase has to stay ahead.
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry &a, const Entry &b) { return a.start < b.start; });
    return GetTextAndCommands(entries);
}

QVector<AutoReplaceManager::Candidate> AutoReplaceManager::candidates(const QString &text) const {
    const QMutexLocker locker(&m_mutex);
    QVector<Candidate> found;
    const QVector<int> numbers = m_index.candidates(text);
    for (const int number : numbers) {
        if (const auto known = expression(m_patterns[number]))
            found.append({m_infos[number], *known});
    }
    return found;
}

std::optional<QRegularExpression> AutoReplaceManager::expression(const QString &pattern) const {
    const auto known = m_expressions.constFind(pattern);
    if (known != m_expressions.cend())
        return *known;
    return *m_expressions.insert(pattern, tryCreateRegexp(pattern));
}

QList<AutoReplaceManager::Entry>
AutoReplaceManager::GetTextAndCommands(const QList<Entry> &entries) {
    QList<Entry> accepted;
    int end = 0;
    for (const Entry &entry : entries) {
        if (entry.start < end)
            continue;
        accepted.append(entry);
        end = entry.start + entry.length;
    }
    return accepted;
}

QRegularExpression AutoReplaceManager::CreateRegexp(const QString &pattern) {
    QStringList words = pattern.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (QString &word : words)
        word = QRegularExpression::escape(word);
    const QRegularExpression expression(
        QStringLiteral("(\\W|^|\\G)(?<Z>") + words.join(QStringLiteral("[.,!:;?\\-\\s]+")) +
            QStringLiteral(")(\\W|$)"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    if (!expression.isValid())
        throw Exception(expression.errorString());
    expression.optimize();
    return expression;
}

void AutoReplaceManager::RefreshAllTextCommands() {
    const QMutexLocker locker(&m_mutex);
    m_themeEntries.clear();
    m_replacements.clear();
    m_selectedThemeId.clear();
    AppendThemeCommands(QString());
    asrThemeChanged();
}

void AutoReplaceManager::asrThemeChanged() {
    const QMutexLocker locker(&m_mutex);
    const QString themeId = m_asrManager->getSelectedTheme().id();
    // Each connection tells the dictionary anew.
    if (!themeId.isEmpty() && themeId == m_selectedThemeId)
        return;
    if (!m_selectedThemeId.isEmpty())
        dropThemeCommands(m_selectedThemeId);
    m_selectedThemeId = themeId;
    if (!m_selectedThemeId.isEmpty())
        AppendThemeCommands(m_selectedThemeId);
    indexReplacements();
}

void AutoReplaceManager::OnRecognitionSettingsChanged() {
    m_asrManager->stopRecognition();
    RefreshAllTextCommands();
}

void AutoReplaceManager::AppendThemeCommands(const QString &themeId) {
    const bool usePunctuation = ASRSettings().UsePunctuation;
    const QList<UserCommand> commands = m_commandsManager->get_ThemeCommands(themeId);
    for (const UserCommand &command : commands) {
        if (command.Type != UserCommandNamespace::UserCommandType::Text)
            continue;
        // The server sets punctuation by itself.
        if (usePunctuation && command.IsPunctuation)
            continue;
        const Info info{command.Pattern, command.Text};
        m_themeEntries.insert(themeId, info);
        // An insertion alone would keep the key that is there, and with it the former text.
        m_replacements.remove(info);
        m_replacements.insert(info, command.get_NormalizedPattern());
    }
}

void AutoReplaceManager::dropThemeCommands(const QString &themeId) {
    // Of several with one pattern the one that was added last stays, which is the one that was in
    // force; values() begins with it.
    QHash<QString, Info> common;
    const QList<Info> commonInfos = m_themeEntries.values(QString());
    for (auto info = commonInfos.crbegin(); info != commonInfos.crend(); ++info)
        common.insert(info->pattern, *info);
    const QList<Info> infos = m_themeEntries.values(themeId);
    for (const Info &info : infos) {
        m_replacements.remove(info);
        const auto back = common.constFind(info.pattern);
        if (back != common.cend())
            m_replacements.insert(*back, back->pattern);
    }
    m_themeEntries.remove(themeId);
}

void AutoReplaceManager::indexReplacements() {
    m_infos = m_replacements.keys();
    m_patterns = m_replacements.values();
    m_index = CandidateIndex(m_patterns);
    QHash<QString, std::optional<QRegularExpression>> needed;
    for (const QString &pattern : qAsConst(m_patterns)) {
        const auto known = m_expressions.constFind(pattern);
        if (known != m_expressions.cend())
            needed.insert(pattern, *known);
    }
    m_expressions = needed;
}
