#pragma once

#include "DeskProcess.h"

#include <QString>

/// An ordinary text editor window of another process.
class Editor {
public:
    /// Returns when the window has the focus.
    /// @param name  tells this editor from others of the test
    explicit Editor(const QString &name);

    void focus();
    QString text() const;

private:
    QString m_file;
    DeskProcess m_process;
};
