#pragma once

#include <QFile>
#include <QString>

#include <memory>

/// The two files that a measuring test run leaves behind: a log for people, and a table. A file
/// that cannot be opened is left out. Main thread.
class SelfTestReport {
public:
    SelfTestReport() = default;

    /// Begins both files, named after the present time.
    void open();
    void close();

    void log(const QString &text) { write(m_log, text); }
    /// @param row  with the end of its line
    void addRow(const QString &row) { write(m_table, row); }

private:
    static void write(const std::unique_ptr<QFile> &file, const QString &text);

    std::unique_ptr<QFile> m_log;
    std::unique_ptr<QFile> m_table;
};
