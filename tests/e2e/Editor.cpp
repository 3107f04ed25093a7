#include "Editor.h"

#include "DeskTest.h"

Editor::Editor(const QString &name) : m_file(desk().folder() + '/' + name) {
    m_process.start(QCoreApplication::applicationDirPath() + "/editor_window", {m_file});
    focus();
}

void Editor::focus() {
    // The search fails if any other window goes meanwhile; the name that it ends with tells.
    const QString search =
        "search --sync --onlyvisible --name %1 windowactivate --sync getwindowname";
    const bool isFocused = QTest::qWaitFor(
        [&] { return !desk().ask("xdotool", search.arg(m_file).split(' ')).isEmpty(); },
        patienceMs);
    if (!isFocused)
        qWarning() << "No window" << m_file;
}

QString Editor::text() const {
    return VirtualDesk::read(m_file);
}
