#pragma once

#include "viewmodels/FilteredCollectionModel.h"
#include "viewmodels/commands/UserCommandViewModel.h"

#include <QRegularExpression>

class CommandsViewModel;
class UserCommandEditModel;

/// The commands of one type; shown are those of one dictionary that a search finds. Owns its rows.
/// Main thread.
class CommandsCollectionViewModel : public FilteredCollectionModel<UserCommandViewModel> {
    Q_OBJECT
    Q_PROPERTY(QObject *FilteredCollection READ get_FilteredCollection CONSTANT)
    /// What the user searches for.
    Q_PROPERTY(QString Filter READ get_Filter WRITE set_Filter NOTIFY changed_Filter)
    Q_PROPERTY(QString HeaderText READ get_HeaderText CONSTANT)
    /// The type's name in the program, by which the view picks its template.
    Q_PROPERTY(QString TypeName READ get_TypeName CONSTANT)

public:
    /// @param window  owns this object
    CommandsCollectionViewModel(UserCommandNamespace::UserCommandType type,
                                CommandsViewModel *window);

    QObject *get_FilteredCollection() { return filteredCollection(); }
    QString get_Filter() const { return m_filter; }
    void set_Filter(const QString &filter);
    QString get_HeaderText() const;
    QString get_TypeName() const;
    UserCommandNamespace::UserCommandType type() const { return m_type; }
    /// The dictionary whose commands are shown.
    QString selectedTheme() const { return m_selectedTheme; }
    void selectTheme(const QString &themeId);
    /// The commands of one dictionary, whatever is shown.
    QList<UserCommandViewModel *> get_CommandSet(const QString &themeId) const;
    /// Adds a row, takes it over and makes it the current one if it is shown.
    void addNew(UserCommandViewModel *row);
    /// Null without a row of this phrase in this dictionary, in any type.
    UserCommandViewModel *findCommand(const QString &themeId, const QString &pattern) const;

    /// Whether the shown row is the system's and cannot be changed.
    Q_INVOKABLE bool isSystem(int index) const;
    Q_INVOKABLE void deleteCommand(QObject *row);
    /// A model for one dialog, the caller's to keep.
    Q_INVOKABLE UserCommandEditModel *newCommand();
    Q_INVOKABLE UserCommandEditModel *editCommand(UserCommandViewModel *row);

signals:
    void changed_Filter(const QString &v);

protected:
    bool filterAcceptsRow(UserCommandViewModel *row) override;

private:
    void rebuild();
    void raiseIndexLater();
    UserCommandEditModel *createEditModel(UserCommandViewModel *row);

    CommandsViewModel *m_window;
    const UserCommandNamespace::UserCommandType m_type;
    QString m_selectedTheme;
    QString m_filter;
    QRegularExpression m_expression;
};
