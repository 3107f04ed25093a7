#pragma once

#include "commands/UserCommand.h"

#include <QObject>

/// One command for views. Main thread.
class UserCommandViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString Pattern READ get_Pattern NOTIFY changed_Pattern)
    Q_PROPERTY(QString Text READ get_Text NOTIFY changed_Text)
    Q_PROPERTY(UserCommandNamespace::UserCommandType Type READ get_Type NOTIFY changed_Type)
    Q_PROPERTY(QString Id READ get_Id NOTIFY changed_Id)
    Q_PROPERTY(bool IsSystem READ get_IsSystem NOTIFY changed_IsSystem)
    /// The id of the dictionary that it belongs to; empty for all.
    Q_PROPERTY(QString Theme READ get_Theme NOTIFY changed_Theme)

public:
    /// A new command, with an id of its own and nothing in it.
    UserCommandViewModel(UserCommandNamespace::UserCommandType type, const QString &themeId,
                         QObject *parent);
    /// Control codes of the text are shown as the characters that they stand for.
    UserCommandViewModel(const UserCommand &command, const QString &themeId, QObject *parent);

    QString get_Pattern() const { return m_command.Pattern; }
    void set_Pattern(const QString &pattern);
    QString get_Text() const { return m_command.Text; }
    void set_Text(const QString &text);
    UserCommandNamespace::UserCommandType get_Type() const { return m_command.Type; }
    QString get_Id() const { return m_command.Id; }
    bool get_IsSystem() const { return m_command.IsSystem; }
    QString get_Theme() const { return m_theme; }

    UserCommand get_UserCommand() const { return m_command; }

signals:
    void changed_Pattern(const QString &v);
    void changed_Text(const QString &v);
    void changed_Type();
    void changed_Id();
    void changed_IsSystem();
    void changed_Theme();

private:
    static QString ConvertSpecialText(QString text);

    UserCommand m_command;
    const QString m_theme;
};
