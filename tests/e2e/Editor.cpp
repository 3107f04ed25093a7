#include "Editor.h"

#include "DeskTest.h"

#include <QFile>

Editor::Editor(const QString &name) : m_file(desk().folder() + QLatin1Char('/') + name) {
    m_process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/editor_window"),
                    {m_file});
    focus();
}

void Editor::focus() {
    desk().run(QStringLiteral("xdotool"),
               {QStringLiteral("search"), QStringLiteral("--sync"), QStringLiteral("--onlyvisible"),
                QStringLiteral("--name"), m_file, QStringLiteral("windowactivate"),
                QStringLiteral("--sync")});
}

QString Editor::text() const {
    QFile file(m_file);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}
