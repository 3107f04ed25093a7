#pragma once

#include <QList>
#include <QMap>
#include <QMutex>
#include <QObject>
#include <QRegularExpression>
#include <QString>

class AsrManager;
class UserCommandsManager;

/// Rewrites recognised text: wherever the phrase of a replacement in force occurs, its text takes
/// the phrase's place. Partial and final results are treated alike, each for itself.
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
    /// The expression that finds a phrase between word boundaries, as its group "Z".
    static QRegularExpression CreateRegexp(const QString &pattern);

public slots:
    void RefreshAllTextCommands();
    void asrThemeChanged();
    /// Also stops recognition.
    void OnRecognitionSettingsChanged();

private:
    void AppendThemeCommands(const QString &themeId);

    mutable QRecursiveMutex m_mutex;
    QString m_selectedThemeId;
    AsrManager *m_asrManager = nullptr;
    UserCommandsManager *m_commandsManager = nullptr;
    /// By the id of the dictionary that they came from, several to an id.
    QMultiMap<QString, Info> m_themeEntries;
};
