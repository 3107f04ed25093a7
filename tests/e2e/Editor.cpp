#include "Editor.h"

#include "DeskTest.h"

Editor::Editor(const QString &name) : m_file(desk().folder() + '/' + name) {
    m_process.start(QCoreApplication::applicationDirPath() + "/editor_window", {m_file});
    focus();
}

void Editor::focus() {
    desk().run("xdotool",
               {"search", "--sync", "--onlyvisible", "--name", m_file, "windowactivate", "--sync"});
}

QString Editor::text() const {
    return VirtualDesk::read(m_file);
}
