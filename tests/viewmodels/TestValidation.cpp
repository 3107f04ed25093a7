#include "DeskTest.h"
#include "viewmodels/ValidatableInt32.h"

#include <QSignalSpy>

#include <utility>

/// The signals of a field, in order.
class Journal {
public:
    explicit Journal(ValidatableText *field) {
        using Field = ValidatableText;
        QObject::connect(field, &Field::changed_Text, [this](auto text) { add("text " + text); });
        QObject::connect(field, &Field::changed_Error, [this](auto text) { add("error " + text); });
        QObject::connect(field, &Field::changed_IsValid,
                         [this](bool is) { add(is ? "valid" : "invalid"); });
    }
    /// What came since the last call.
    QString take() { return std::exchange(m_lines, {}).join('|'); }

private:
    void add(const QString &line) { m_lines << line; }

    QStringList m_lines;
};

/// Fields that check what is typed into them.
class TestValidation : public QObject {
    Q_OBJECT

private slots:
    void keepsWhatIsTyped() {
        ValidatableText field;
        field.setValidator(refuseEmpty);
        Journal journal(&field);
        QVERIFY(field.get_IsValid());
        field.set_Text("a");
        QCOMPARE(journal.take(), "text a");
        field.setProperty("Text", "throw");
        QCOMPARE(journal.take(), "error нельзя|invalid|text throw");
        field.set_Text("");
        QCOMPARE(journal.take(), "error пусто|invalid|text ");
        QCOMPARE(field.property("Text").toString(), "");
        QCOMPARE(field.property("Error").toString(), "пусто");
        QVERIFY(!field.property("IsValid").toBool());
        field.set_Text("");
        QCOMPARE(journal.take(), "");
        field.set_Text("b");
        QCOMPARE(journal.take(), "error |valid|text b");
    }

    void checksNumbers_data() {
        columns<QString, QString, QString>("text", "conversionError", "error");
        const QString none;
        const QString own = "не число";
        QTest::newRow("number") << "-12" << none << none;
        QTest::newRow("letter, text of its own") << "12a" << own << own;
        QTest::newRow("beyond the range of int") << "2147483648" << none << "Cannot convert";
        QTest::newRow("hexadecimal") << "0x10" << none << "Cannot convert";
        QTest::newRow("refused as a text, so not converted") << "" << own << "пусто";
        QTest::newRow("refused as a value") << "500" << own << "много";
        QTest::newRow("value that makes the check throw") << "13" << none << "нельзя";
    }

    void checksNumbers() {
        QFETCH(QString, text);
        QFETCH(QString, conversionError);
        ValidatableInt32 field;
        field.setConversionError(conversionError);
        field.setValidator(refuseEmpty);
        field.setValueValidator([](ValidatableText::ValidationArgs *args, const int &value) {
            if (value > 100)
                args->error = "много";
            else if (value == 13)
                throw Exception("нельзя");
        });
        field.set_Text(text);
        field.CheckAndSetFocus();
        QTEST(field.get_Error(), "error");
        QCOMPARE(field.get_Text(), text);
    }

    void announcesNumbers() {
        ValidatableInt32 field;
        QSignalSpy changed(&field, &ValidatableInt32::changed_Value);
        QVERIFY_EXCEPTION_THROWN(field.get_IntValue(), ConveterException);
        field.setProperty("IntValue", -5);
        QCOMPARE(field.get_Text(), "-5");
        for (const char *text : {"-5x", "-05", "6"})
            field.set_Text(text);
        QCOMPARE(changed, (QList<QVariantList>{{-5}, {6}}));
        QCOMPARE(field.property("IntValue").toInt(), 6);
    }

private:
    static void refuseEmpty(ValidatableText::ValidationArgs *args) {
        if (args->text.isEmpty())
            args->error = "пусто";
        else if (args->text == "throw")
            throw Exception("нельзя");
    }
};

DESK_CORE_TEST_MAIN(TestValidation)
#include "TestValidation.moc"
