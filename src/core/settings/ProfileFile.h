#pragma once

#include <QSettings>
#include <QString>

/// A file of the user's profile. Made on the stack where it is needed, on any thread.
class ProfileFile : public QSettings {
    Q_OBJECT

public:
    /// Where the user works.
    static ProfileFile organisation() { return ProfileFile(QStringLiteral("Organisation.ini")); }
    /// Who the user is.
    static ProfileFile userInfo() { return ProfileFile(QStringLiteral("UserInfo.ini")); }

    /// Empty for a missing key.
    QString text(const char *key) const { return value(QString::fromLatin1(key)).toString(); }
    void setText(const char *key, const QString &text) { setValue(QString::fromLatin1(key), text); }
    /// Writes the file; a failure is logged.
    void save();

private:
    explicit ProfileFile(const QString &name);
};
