#include <QApplication>
#include <QFile>
#include <QPlainTextEdit>

/// An ordinary text edit in a process of its own: keeps its content in the file that the only
/// argument names.
int main(int argc, char **argv) {
    QApplication application(argc, argv);
    const QString file = application.arguments().value(1);
    QPlainTextEdit edit;
    edit.setWindowTitle(file);
    QObject::connect(&edit, &QPlainTextEdit::textChanged, &edit, [&edit, file] {
        QFile content(file);
        if (content.open(QIODevice::WriteOnly))
            content.write(edit.toPlainText().toUtf8());
    });
    edit.show();
    return QApplication::exec();
}
