#include "DeskTest.h"
#include "commands/FileCopyCommandExecutor.h"
#include "commands/readers/CompositeFileReader.h"

#include <QFile>
#include <QTextCodec>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
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

QString save(const QString &name, const QByteArray &bytes) {
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return QString();
    return file.fileName();
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

/// An archive of few bytes with a text of a gigabyte.
QString zipBomb() {
    const QString name = path("bomb.odt");
    desk().run("python3", {"-c",
                           "import sys, zipfile\n"
                           "with zipfile.ZipFile(sys.argv[1], 'w', zipfile.ZIP_DEFLATED, "
                           "compresslevel=1).open('content.xml', 'w') as part:\n"
                           "    [part.write(bytes(1 << 24)) for _ in range(64)]",
                           name});
    return name;
}

QByteArray nested(int depth) {
    return document(QByteArray("<text:p>").repeated(depth) + "x" +
                    QByteArray("</text:p>").repeated(depth));
}

QString fifo() {
    mkfifo(qPrintable(path("fifo.odt")), 0600);
    return path("fifo.odt");
}

QString unixSocket() {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, qPrintable(path("s")), sizeof address.sun_path);
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    bind(descriptor, reinterpret_cast<sockaddr *>(&address), sizeof address);
    close(descriptor);
    return path("s");
}

/// A figure of the kernel's on this process.
long statusKiB(const char *name) {
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray text = status.readAll();
    return text.mid(text.indexOf(name) + qstrlen(name)).trimmed().split(' ').first().toLong();
}

void resetPeak() {
    QFile references("/proc/self/clear_refs");
    if (references.open(QIODevice::WriteOnly))
        references.write("5");
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
    void readsADocumentOfLibreOffice();
    void refuses_data();
    void refuses();
    void preparesTheText_data();
    void preparesTheText();
};

void TestReaders::readsPlainText_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    const QString russian = "Ёлка № 5";
    QTest::newRow("UTF-8") << russian.toUtf8() << russian;
    QTest::newRow("UTF-8 with its mark") << "\xEF\xBB\xBF" + russian.toUtf8() << russian;
    QTest::newRow("UTF-16 by its mark")
        << QTextCodec::codecForName("UTF-16")->fromUnicode(russian) << russian;
    QTest::newRow("Windows-1251") << QTextCodec::codecForName("windows-1251")->fromUnicode(russian)
                                  << russian;
    QTest::newRow("line ends") << QByteArray("a\r\nb\nc\rd") << "a\nb\nc\rd";
    QTest::newRow("empty") << QByteArray() << "";
}

void TestReaders::readsPlainText() {
    QFETCH(QByteArray, bytes);
    QString error;
    QTEST(CompositeFileReader().ReadFile(save("plain.txt", bytes), &error), "text");
    QCOMPARE(error, QString());
}

void TestReaders::readsOpenDocument_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QByteArray &body, const QString &text) {
        QTest::newRow(name) << document(body) << text;
    };
    row("two paragraphs", "<text:p>a</text:p><text:p>b</text:p>", "a\r\nb\r\n");
    row("tab, blank, line break",
        "<text:p>x<text:tab/>y<text:s text:c='3'/>z<text:line-break/>q</text:p>",
        "x\ty z\r\nq\r\n");
    row("names of any case", "<text:H>a</text:H>", "a\r\n");
    row("text outside the text namespace", "loose<office:x>lost<text:p>kept</text:p></office:x>",
        "kept\r\n");
    row("text in an unknown element", "<text:note>n<text:p>p</text:p></text:note>", "np\r\n");
    row("blanks between spans, not between paragraphs",
        "\n  <text:p><text:span>один</text:span> <text:span>два</text:span></text:p>\n  "
        "<text:list>\n  <text:list-item><text:p>три</text:p></text:list-item>\n</text:list>",
        "один два\r\nтри\r\n");
    row("marks and comments", "<text:p>&lt;a&gt;<!-- no --><![CDATA[ & ]]></text:p>", "<a> & \r\n");
    QTest::newRow("another encoding")
        << QTextCodec::codecForName("windows-1251")
               ->fromUnicode("<?xml version='1.0' encoding='windows-1251'?>" +
                             QString::fromUtf8(document("<text:p>да</text:p>")))
        << "да\r\n";
    QTest::newRow("not well-formed") << QByteArray("<office:text><text:p>a") << "";
    QTest::newRow("entity bomb")
        << QByteArray(
               "<!DOCTYPE d [<!ENTITY a 'aaaaaaaaaaaaaaaaaaaa'>"
               "<!ENTITY b '&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;'>"
               "<!ENTITY c '&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;'>"
               "<!ENTITY e '&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;'>]>") +
               document("<text:p>&e;</text:p>")
        << "";
}

void TestReaders::readsOpenDocument() {
    QFETCH(QByteArray, content);
    QString error;
    QTEST(CompositeFileReader().ReadFile(pack("archive.odt", "content.xml", content), &error),
          "text");
    QCOMPARE(error, QString());
}

void TestReaders::readsADocumentOfLibreOffice() {
    QString error;
    QCOMPARE(CompositeFileReader().ReadFile(QStringLiteral(DOCUMENTS "/discharge.odt"), &error),
             QStringLiteral("Выписной эпикриз\r\nПациент Ёлкин Пётр, 54 года.\r\nДиагноз\r\n"
                            "Гипертоническая болезнь II  стадии\r\nриск 3\r\n\r\nСтол № 10\r\n"
                            "Эналаприл 5 мг\r\nутром\r\nГемоглобин\r\n140 г/л\r\nСОЭ\r\n"
                            "8 мм/ч\r\nПодпись:\t_____\t<врач> & зав. отделением\r\n"));
    QCOMPARE(error, QString());
}

void TestReaders::refuses_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("error");
    const QString missing = "Файла не существует";
    const QString closed = "Не удалось открыть файл";
    const QString broken = "Error While Reading the File";
    const QString large = "Файл слишком велик";
    QTest::newRow("missing text") << path("none.txt") << missing;
    QFile::link(path("none.txt"), path("dangling.txt"));
    QTest::newRow("dangling link") << path("dangling.txt") << missing;
    QTest::newRow("folder") << path("") << closed;
    QTest::newRow("device without an end") << "/dev/zero" << closed;
    QTest::newRow("socket") << unixSocket() << closed;
    QTest::newRow("text of 50 MB") << save("large.txt", QByteArray(50 << 20, 'a')) << large;
    QTest::newRow("pipe as a document") << fifo() << broken;
    QTest::newRow("missing document") << path("none.odt") << broken;
    QTest::newRow("no archive") << save("text.odt", "text") << broken;
    QTest::newRow("archive without the text") << pack("other.odt", "other.xml", "x") << broken;
    QTest::newRow("damaged archive") << damagedZip() << broken;
    QTest::newRow("encrypted archive")
        << pack("secret.odt", "content.xml", document("<text:p>a</text:p>"), ZIP_EM_AES_128)
        << broken;
    QTest::newRow("gigabyte of zeros") << zipBomb() << large;
    QTest::newRow("a million elements within one another")
        << pack("deep.odt", "content.xml", nested(1000000)) << large;
    QTest::newRow("a million elements in a row")
        << pack("wide.odt", "content.xml", document(QByteArray("<text:s/>").repeated(1000000)))
        << large;
    QTest::newRow("more text than can be typed")
        << pack("long.odt", "content.xml",
                document("<text:p>" + QByteArray(2 << 20, 'a') + "</text:p>"))
        << large;
}

void TestReaders::refuses() {
    QFETCH(QString, path);
    constexpr long enoughKiB = 200 * 1024;
    const long before = statusKiB("VmRSS:");
    resetPeak();
    QString error;
    QCOMPARE(CompositeFileReader().ReadFile(path, &error), QString());
    QTEST(error, "error");
    const long used = statusKiB("VmHWM:") - before;
    QVERIFY2(used < enoughKiB, qPrintable(QString::number(used)));
}

void TestReaders::preparesTheText_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("line ends of all kinds") << QByteArray("a\r\nb\nc\rd") << " a\rb\rc\rd";
    QTest::newRow("blank ahead") << QByteArray(" a") << " a";
    QTest::newRow("tab ahead") << QByteArray("\ta") << "\ta";
    QTest::newRow("line end ahead") << QByteArray("\na") << "\ra";
    QTest::newRow("empty") << QByteArray() << "";
}

void TestReaders::preparesTheText() {
    QFETCH(QByteArray, bytes);
    UserCommand command(UserCommandNamespace::UserCommandType::FileCopy);
    command.Text = save("plain.txt", bytes);
    const CommandResult result = FileCopyCommandExecutor().Execute(command);
    QTEST(result.result(), "text");
    QCOMPARE(result.error(), QString());
    QFile::remove(command.Text);
    QCOMPARE(FileCopyCommandExecutor().Execute(command).error(), QString("Файла не существует"));
}

DESK_CORE_TEST_MAIN(TestReaders)
#include "TestReaders.moc"
