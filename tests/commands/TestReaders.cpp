#include "DeskTest.h"
#include "Files.h"
#include "commands/FileCopyCommandExecutor.h"
#include "commands/readers/CompositeFileReader.h"

#include <QTextCodec>

#include <sys/stat.h>
#include <zip.h>

namespace {

const QByteArray textNamespaces = "xmlns:office='urn:oasis:names:tc:opendocument:xmlns:office:1.0' "
                                  "xmlns:text='urn:oasis:names:tc:opendocument:xmlns:text:1.0'";

QByteArray document(const QByteArray &body) {
    return "<office:text " + textNamespaces + ">" + body + "</office:text>";
}

QString path(const QString &name) {
    return desk().folder() + '/' + name;
}

QString saveAs(const QString &name, const QByteArray &bytes) {
    return save(path(name), bytes) ? path(name) : QString();
}

/// An archive with one part, encrypted or not.
QString pack(const QString &archiveName, const QByteArray &part, const QByteArray &content,
             zip_uint16_t encryption = ZIP_EM_NONE) {
    const QString name = path(archiveName);
    QFile::remove(name);
    int code = 0;
    zip_t *archive = zip_open(qPrintable(name), ZIP_CREATE, &code);
    zip_source_t *source = zip_source_buffer(archive, content.constData(), content.size(), 0);
    const zip_int64_t index = zip_file_add(archive, part.constData(), source, 0);
    zip_file_set_encryption(archive, index, encryption, "secret");
    return zip_close(archive) == 0 ? name : QString();
}

/// An archive with one byte of its packed text changed.
QString damagedZip() {
    const QString name =
        pack("damaged.odt", "content.xml", document("<text:p>abcdefghijklmnop</text:p>"));
    QFile file(name);
    if (!file.open(QIODevice::ReadWrite) || !file.seek(80))
        return QString();
    file.putChar('\xAA');
    return name;
}

/// A figure of the kernel's on this process.
long statusKiB(const char *name) {
    const QByteArray text = bytesOf("/proc/self/status");
    return text.mid(text.indexOf(name) + qstrlen(name)).trimmed().split(' ').first().toLong();
}

} // namespace

/// Documents that the user has typed out, good and bad ones.
class TestReaders : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8")); }
    void readsPlainText_data();
    void readsPlainText();
    void readsOpenDocument_data();
    void readsOpenDocument();
    void refuses_data();
    void refuses();
    void preparesTheText_data();
    void preparesTheText();
};

void TestReaders::readsPlainText_data() {
    columns<QByteArray, QString>("bytes", "text");
    const QString russian = "Ёлка № 5";
    row("UTF-8", russian.toUtf8(), russian);
    row("UTF-8 with its mark", "\xEF\xBB\xBF" + russian.toUtf8(), russian);
    row("UTF-16 by its mark", QTextCodec::codecForName("UTF-16")->fromUnicode(russian), russian);
    row("Windows-1251", QTextCodec::codecForName("windows-1251")->fromUnicode(russian), russian);
}

void TestReaders::readsPlainText() {
    QFETCH(QByteArray, bytes);
    QString error;
    QTEST(CompositeFileReader().ReadFile(saveAs("plain.txt", bytes), &error), "text");
    QCOMPARE(error, QString());
}

void TestReaders::readsOpenDocument_data() {
    columns<QByteArray, QString>("content", "text");
    const auto good = [](const char *name, const QByteArray &body, const QString &text) {
        row(name, document(body), text);
    };
    good("tab, blank, line break",
         "<text:p>x<text:tab/>y<text:s text:c='3'/>z<text:line-break/>q</text:p>",
         "x\ty z\r\nq\r\n");
    good("names of any case", "<text:H>a</text:H>", "a\r\n");
    good("text outside the text namespace", "loose<office:x>lost<text:p>kept</text:p></office:x>",
         "kept\r\n");
    good("text in an unknown element", "<text:note>n<text:p>p</text:p></text:note>", "np\r\n");
    good("blanks between spans, not between paragraphs",
         "\n  <text:p><text:span>один</text:span> <text:span>два</text:span></text:p>\n  "
         "<text:list>\n  <text:list-item><text:p>три</text:p></text:list-item>\n</text:list>",
         "один два\r\nтри\r\n");
    good("an indented paragraph",
         "<text:p>\n  <text:span>один</text:span>\n  <text:span>два</text:span>\n</text:p>",
         " один два \r\n");
    good("marks and comments", "<text:p>&lt;a&gt;<!-- no --><![CDATA[ & ]]></text:p>",
         "<a> & \r\n");
    row("another encoding",
        QTextCodec::codecForName("windows-1251")
            ->fromUnicode("<?xml version='1.0' encoding='windows-1251'?>" +
                          QString::fromUtf8(document("<text:p>да</text:p>"))),
        "да\r\n");
    row("not well-formed", QByteArray("<office:text><text:p>a"), "");
}

void TestReaders::readsOpenDocument() {
    QFETCH(QByteArray, content);
    QString error;
    QTEST(CompositeFileReader().ReadFile(pack("archive.odt", "content.xml", content), &error),
          "text");
    QCOMPARE(error, QString());
}

void TestReaders::refuses_data() {
    columns<QString, QString>("path", "error");
    const QString missing = "Файла не существует";
    const QString closed = "Не удалось открыть файл";
    const QString broken = "Error While Reading the File";
    const QString large = "Файл слишком велик";
    row("missing text", path("none.txt"), missing);
    QFile::link(path("none.txt"), path("dangling.txt"));
    row("dangling link", path("dangling.txt"), missing);
    row("folder", path(""), closed);
    row("device without an end", "/dev/zero", closed);
    row("file whose reading fails", "/proc/self/mem", "Произошла ошибка при чтении из файла");
    row("text of 50 MB", saveAs("large.txt", QByteArray(50 << 20, 'a')), large);
    mkfifo(qPrintable(path("fifo.odt")), 0600);
    row("pipe as a document", path("fifo.odt"), broken);
    row("missing document", path("none.odt"), broken);
    row("no archive", saveAs("text.odt", "text"), broken);
    row("archive without the text", pack("other.odt", "other.xml", "x"), broken);
    row("damaged archive", damagedZip(), broken);
    row("encrypted archive",
        pack("secret.odt", "content.xml", document("<text:p>a</text:p>"), ZIP_EM_AES_128), broken);
    row("zeros without an end", pack("bomb.odt", "content.xml", QByteArray(256 << 20, '\0')),
        large);
    row("a million elements within one another",
        pack("deep.odt", "content.xml",
             document(QByteArray("<text:p>").repeated(1000000) +
                      QByteArray("</text:p>").repeated(1000000))),
        large);
    row("entity bomb",
        pack("entities.odt", "content.xml",
             "<!DOCTYPE d [<!ENTITY a 'aaaaaaaa'><!ENTITY b '&a;&a;&a;&a;'>]>" +
                 document("<text:p>&b;</text:p>")),
        broken);
    row("archive of 33 MB", saveAs("big.odt", QByteArray(33 << 20, 'a')), large);
    row("a million elements in a row",
        pack("wide.odt", "content.xml", document(QByteArray("<text:s/>").repeated(1000000))),
        large);
    row("more text than can be typed",
        pack("long.odt", "content.xml",
             document("<text:p>" + QByteArray(2 << 20, 'a') + "</text:p>")),
        large);
}

void TestReaders::refuses() {
    QFETCH(QString, path);
    constexpr long enoughKiB = 200 * 1024;
    const long before = statusKiB("VmRSS:");
    save("/proc/self/clear_refs", "5"); // forgets the peak so far
    QString error;
    QCOMPARE(CompositeFileReader().ReadFile(path, &error), QString());
    QTEST(error, "error");
    const long used = statusKiB("VmHWM:") - before;
    QVERIFY2(used < enoughKiB, qPrintable(QString::number(used)));
}

void TestReaders::preparesTheText_data() {
    columns<QByteArray, QString>("bytes", "text");
    // Typed, these would be Escape and Backspace.
    row("no text at all", QByteArray("PK\x1B\x08"), "");
    row("line ends of all kinds", QByteArray("a\r\nb\nc\rd"), " a\rb\rc\rd");
    row("an old mark of the end", QByteArray("a\x1A"), " a");
    row("blank ahead", QByteArray(" a"), " a");
    row("tab ahead", QByteArray("\ta"), "\ta");
    row("line end ahead", QByteArray("\na"), "\ra");
    row("empty", QByteArray(), "");
}

void TestReaders::preparesTheText() {
    QFETCH(QByteArray, bytes);
    UserCommand command(UserCommandNamespace::UserCommandType::FileCopy);
    command.Text = saveAs("plain.txt", bytes);
    const CommandResult result = FileCopyCommandExecutor().Execute(command);
    QTEST(result.result(), "text");
    QCOMPARE(result.error().isEmpty(), !result.result().isEmpty() || bytes.isEmpty());
    QFile::remove(command.Text);
    QCOMPARE(FileCopyCommandExecutor().Execute(command).error(), QString("Файла не существует"));
}

DESK_CORE_TEST_MAIN(TestReaders)
#include "TestReaders.moc"
