#pragma once

#include "commands/CandidateIndex.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QMutex>
#include <QObject>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

class AsrManager;
class UserCommandsManager;

/// Rewrites recognised text: wherever the phrase of a replacement in force occurs, its text takes
/// the phrase's place. Partial and final results are treated alike, each for itself.
///
/// An expression is compiled when its phrase first occurs in a text, once, and kept; a text meets
/// only the expressions of the phrases whose words it has.
///
/// Lives on the main thread; ProcessText() and Process() may be called from any thread.
class AutoReplaceManager : public QObject {
    Q_OBJECT

public:
    /// A replacement, known by its pattern as typed; as a key it sorts in reverse, so that a longer
    /// phrase comes ahead of the one that it begins with.
    struct Info {
        QString pattern;
        QString text;

        friend bool operator==(const Info &a, const Info &b) { return a.pattern == b.pattern; }
        friend bool operator<(const Info &a, const Info &b) { return b.pattern < a.pattern; }
    };

    /// Where a replacement applies, in characters of the examined text.
    struct Entry {
        Info info;
        int start;
        int length;
    };

    /// To be called once, after the commands have been loaded. Neither is owned.
    /// @throws Exception  it was called before
    void set_Managers(AsrManager *asrManager, UserCommandsManager *commandsManager);

    /// The text with all replacements applied; what was put in is not examined again.
    QString ProcessText(const QString &text) const;
    /// The matches that apply, by rising start, none overlapping another.
    QList<Entry> Process(const QString &text) const;
    /// Of overlapping entries, sorted by start, keeps those that begin first.
    static QList<Entry> GetTextAndCommands(const QList<Entry> &entries);
    /// The expression that finds a phrase between word boundaries, as its group "Z"; compiled.
    /// @throws Exception  the pattern is no valid text, or too long
    static QRegularExpression CreateRegexp(const QString &pattern);

public slots:
    /// Takes all commands anew.
    void RefreshAllTextCommands();
    /// Exchanges the commands of the dictionary that was selected for those of the one that is.
    void asrThemeChanged();
    /// Also stops recognition.
    void OnRecognitionSettingsChanged();

private:
    /// A replacement that may apply, with the expression that tells.
    struct Candidate {
        Info info;
        QRegularExpression expression;
    };

    void AppendThemeCommands(const QString &themeId);
    void dropThemeCommands(const QString &themeId);
    void indexReplacements();
    QVector<Candidate> candidates(const QString &text) const;
    std::optional<QRegularExpression> expression(const QString &pattern) const;

    /// Guards all that follows.
    mutable QRecursiveMutex m_mutex;
    QString m_selectedThemeId;
    AsrManager *m_asrManager = nullptr;
    UserCommandsManager *m_commandsManager = nullptr;
    /// By the id of the dictionary that they came from, several to an id.
    QMultiMap<QString, Info> m_themeEntries;
    /// What is in force, with the pattern that each one's expression is made of.
    QMap<Info, QString> m_replacements;
    // The same in its order, by number.
    QList<Info> m_infos;
    QStringList m_patterns;
    CandidateIndex m_index;
    /// By pattern, those that were needed so far; without a value where there can be none.
    mutable QHash<QString, std::optional<QRegularExpression>> m_expressions;
};
