#include "Browser.h"
#include "DeskTest.h"
#include "Program.h"
#include "Stand.h"
#include "connection/messages/MessageType.h"
#include "core/settings/FormApiSettings.h"

#include <QTcpServer>
#include <QTcpSocket>

namespace {

constexpr int FormEnds = 116;
constexpr int FormBegins = 115;

/// Two ports that are free now.
QPair<int, int> freePorts() {
    QTcpServer one;
    QTcpServer two;
    one.listen(QHostAddress::LocalHost);
    two.listen(QHostAddress::LocalHost);
    return {one.serverPort(), two.serverPort()};
}

} // namespace

/// The example form in a real browser, with the program and a server behind it.
class TestWebForm : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        const auto [port, restPort] = freePorts();
        m_page.setQuery(QString("port=%1&rest=%2").arg(port).arg(restPort));
        m_stand = std::make_unique<Stand>();
        // A loss of the last server of a list would end what the form began.
        m_stand->offerServers(2);
        writeSettings(*m_stand);
        FormApiSettings().Port = port;
        FormApiSettings().RestPort = restPort;
        m_program = startProgram(m_stand.get(), Program::install(m_log));
        QVERIFY(m_program);
        m_browser = std::make_unique<Browser>();
    }

    void cleanupTestCase() {
        m_browser.reset();
        QCOMPARE(m_program->terminate(), 0);
        m_program.reset();
        m_stand.reset();
        const QString log = desk().read(m_log);
        QVERIFY(log.contains("GET REQUEST"));
        for (const char *word : {"кашель", "болеет", "Бронхит", "бронхит", "слово"})
            QVERIFY2(!log.contains(QString::fromUtf8(word)), word);
    }

    void init() {
        m_browser->open(m_page);
        QTRY_COMPARE_WITH_TIMEOUT(state(), m_ready, patienceMs);
        QVERIFY(!m_stand->waitForMessage(MessageType::FormElement).isEmpty());
    }

    void isFilledByVoice() {
        sayInto("complaints", "кашель , одышка");
        sayInto("anamnesis", "болеет неделю .");
        sayInto("conclusion", "бронхит");
        sayInto("conclusion", "острый");
        QTRY_COMPARE(value("conclusion"), QString(" Бронхит острый"));
        QCOMPARE(value("complaints"), QString("Кашель, одышка"));
        QCOMPARE(value("anamnesis"), QString(" болеет неделю."));
        m_stand->tell({{"do", "message"}, {"type", 209}, {"data", "слово , за"}});
        QTRY_COMPARE(m_browser->eval("document.getElementById('partial').textContent"),
                     QString("слово, за"));
        QTRY_COMPARE(
            m_browser->eval("[...document.getElementById('theme').options].map(o => o.text)"),
            QString("Как в программе,Терапия,Кардиология,Хирургия"));
        desk().screenshot(desk().folder() + "/form.png");
    }

    void followsTheFocus() {
        m_stand->tell(
            {{"do", "message"}, {"type", 202}, {"data", QJsonObject{{"Key", "conclusion"}}}});
        QTRY_COMPARE(focused(), QString("conclusion"));
        m_stand->forget();
        m_browser->click("#anamnesis");
        QCOMPARE(m_stand->waitForMessage(MessageType::FormElement)["data"].toString(),
                 QString("anamnesis"));
    }

    void givesWayToAnotherPage() {
        const QString first = m_browser->window();
        m_stand->forget();
        m_browser->openWindow();
        m_browser->open(m_page);
        QTRY_COMPARE(state(), m_ready);
        QVERIFY(!m_stand->waitForMessage(FormEnds).isEmpty());
        QVERIFY(!m_stand->waitForMessage(FormBegins).isEmpty());
        sayInto("complaints", "для второй");
        QTRY_VERIFY(!value("complaints").isEmpty());
        m_stand->tell({{"do", "message"}, {"type", 209}, {"data", "недосказан"}});
        m_stand->forget();
        m_browser->closeWindow();
        QVERIFY2(!m_stand->waitForMessage(FormEnds).isEmpty(), "it ends with its page");
        m_browser->switchTo(first);
        QTRY_COMPARE(state(), QString("Диктовка идёт в другую страницу"));
        QCOMPARE(value("complaints"), QString());
        m_browser->click("#again");
        QTRY_COMPARE(state(), m_ready);
    }

    void isThereForNamedPagesOnly() {
        QVERIFY2(m_program->log().contains("Notification: Подключилась веб-страница null"),
                 "the page from the file has been announced");
        QTcpServer pages;
        QVERIFY(pages.listen(QHostAddress::LocalHost));
        connect(&pages, &QTcpServer::newConnection, &pages, [&pages] {
            QTcpSocket *socket = pages.nextPendingConnection();
            socket->write("HTTP/1.0 200 OK\r\nContent-Type: text/html\r\n\r\n<p>form</p>");
            socket->disconnectFromHost();
        });
        const QString origin = "http://%1:" + QString::number(pages.serverPort());
        FormApiSettings settings;
        settings.AllowedOrigins = "https://his.clinic.example, " + origin.arg("localhost");
        settings.sync();
        const QString address = "ws://127.0.0.1:" + QString::number(settings.Port);
        for (const char *host : {"127.0.0.1", "localhost"}) {
            m_browser->open(origin.arg(host));
            m_browser->eval("window.form = new WebSocket('" + address + "')");
            const QString expected = qstrcmp(host, "localhost") == 0 ? "1" : "3";
            QTRY_COMPARE(m_browser->eval("window.form.readyState"), expected);
        }
        const QString log = m_program->log();
        QVERIFY(log.contains("it: " + origin.arg("127.0.0.1")));
        QVERIFY(log.contains("Notification: Подключилась веб-страница " + origin.arg("localhost")));
    }

private:
    QString state() { return m_browser->eval("document.getElementById('state').textContent"); }
    QString value(const char *key) {
        return m_browser->eval(QString("document.getElementById('%1').value").arg(key));
    }
    void sayInto(const char *key, const char *text) {
        m_stand->tell({{"do", "message"},
                       {"type", 201},
                       {"data", QJsonObject{{"Key", key}, {"Type", 0}, {"Value", QString(text)}}}});
    }
    QString focused() { return m_browser->eval("document.activeElement.id"); }

    const QString m_ready = "Диктовка в форму: говорите";
    const QString m_log = desk().folder() + "/installed.log";
    std::unique_ptr<Stand> m_stand;
    std::unique_ptr<Program> m_program;
    std::unique_ptr<Browser> m_browser;
    QUrl m_page = QUrl::fromLocalFile(FORM);
};

DESK_TEST_MAIN(TestWebForm, VirtualDesk::Screen | VirtualDesk::Sound)
#include "TestWebForm.moc"
