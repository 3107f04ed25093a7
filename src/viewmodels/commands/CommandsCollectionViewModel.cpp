#include "viewmodels/commands/CommandsCollectionViewModel.h"

#include "viewmodels/commands/CommandsViewModel.h"
#include "viewmodels/commands/FileCopyEditModel.h"
#include "viewmodels/commands/HotKeyEditModel.h"
#include "viewmodels/commands/ProcessExecuteEditModel.h"
#include "viewmodels/commands/TextReplaceEditModel.h"

#include <QDebug>
#include <QMetaEnum>
#include <QTimer>

using UserCommandNamespace::UserCommandType;

CommandsCollectionViewModel::CommandsCollectionViewModel(UserCommandType type,
                                                         CommandsViewModel *window)
    : FilteredCollectionModel(window), m_window(window), m_type(type) {}

QString CommandsCollectionViewModel::get_HeaderText() const {
    return Enum<UserCommandType>::ToString(m_type);
}

QString CommandsCollectionViewModel::get_TypeName() const {
    return QString::fromLatin1(
        QMetaEnum::fromType<UserCommandType>().valueToKey(static_cast<int>(m_type)));
}

void CommandsCollectionViewModel::set_Filter(const QString &filter) {
    if (filter == m_filter)
        return;
    static const QRegularExpression escapedBlanks(QStringLiteral("(\\\\\\s)+"));
    m_filter = filter;
    m_expression = QRegularExpression(
        QRegularExpression::escape(filter).replace(escapedBlanks, QStringLiteral("\\s+")),
        QRegularExpression::CaseInsensitiveOption);
    emit changed_Filter(filter);
    rebuild();
}

void CommandsCollectionViewModel::selectTheme(const QString &themeId) {
    m_selectedTheme = themeId;
    rebuild();
}

bool CommandsCollectionViewModel::filterAcceptsRow(UserCommandViewModel *row) {
    if (row->get_Theme() != m_selectedTheme)
        return false;
    return m_filter.isEmpty() || m_expression.match(row->get_Pattern().toLower()).hasMatch() ||
           m_expression.match(row->get_Text().toLower()).hasMatch();
}

void CommandsCollectionViewModel::rebuild() {
    refilter();
    raiseIndexLater();
}

void CommandsCollectionViewModel::raiseIndexLater() {
    constexpr int settlingMs = 30;
    QTimer::singleShot(settlingMs, this, [this] { raiseIndexChanged(); });
}

QList<UserCommandViewModel *>
CommandsCollectionViewModel::get_CommandSet(const QString &themeId) const {
    QList<UserCommandViewModel *> result;
    for (QObject *row : collection()->items()) {
        auto *command = static_cast<UserCommandViewModel *>(row);
        if (command->get_Theme() == themeId)
            result << command;
    }
    return result;
}

UserCommandViewModel *CommandsCollectionViewModel::findCommand(const QString &themeId,
                                                               const QString &pattern) const {
    return m_window->findCommand(themeId, pattern);
}

void CommandsCollectionViewModel::addNew(UserCommandViewModel *row) {
    row->setParent(this);
    add(row);
    const int index = filteredCollection()->indexOf(row);
    if (index >= 0)
        filteredCollection()->set_CurrentIndex(index);
    raiseIndexLater();
}

bool CommandsCollectionViewModel::isSystem(int index) const {
    const UserCommandViewModel *row = filteredCollection()->at(index);
    return row && row->get_IsSystem();
}

void CommandsCollectionViewModel::deleteCommand(QObject *row) {
    auto *command = qobject_cast<UserCommandViewModel *>(row);
    if (!command)
        return;
    qDebug().nospace() << "deleteItem #" << row;
    remove(command);
    command->deleteLater();
}

UserCommandEditModel *CommandsCollectionViewModel::newCommand() {
    return createEditModel(nullptr);
}

UserCommandEditModel *CommandsCollectionViewModel::editCommand(UserCommandViewModel *row) {
    return createEditModel(row);
}

UserCommandEditModel *CommandsCollectionViewModel::createEditModel(UserCommandViewModel *row) {
    switch (m_type) {
    case UserCommandType::Exe:
        return new ProcessExecuteEditModel(row, this);
    case UserCommandType::Key:
        return new HotKeyEditModel(row, this);
    case UserCommandType::FileCopy:
        return new FileCopyEditModel(row, this);
    default:
        return new TextReplaceEditModel(row, this);
    }
}
