#include "DeskTest.h"
#include "viewmodels/ValidatableInt32.h"

#include <QSignalSpy>

namespace {

/// The signals of a field, in order.
class Journal {
public:
    explicit Journal(ValidatableText *field) {
        QObject::connect(field, &ValidatableText::changed_Text, field,
                         [this](const QString &text) { m_lines << "text " + text; });
        QObject::connect(field, &ValidatableText::changed_Error, field,
                         [this](const QString &error) { m_lines << "error " + error; });
        QObject::connect(field, &ValidatableText::changed_IsValid, field,
                         [this](bool is) { m_lines << (is ? "valid" : "invalid"); });
        QObject::connect(field, &ValidatableText::validateFailed, field,
                         [this] { m_lines << "focus"; });
    }
    /// What came since the last call.
    QStringList take() {
        QStringList lines;
        lines.swap(m_lines);
        return lines;
    }

private:
    QStringList m_lines;
};

void refuseEmpty(ValidatableText::ValidationArgs *args) {
    if (args->text.isEmpty())
        args->error = QStringLiteral("пусто");
    else if (args->text == QLatin1String("throw"))
        throw Exception(QStringLiteral("нельзя"));
}

} // namespace

/// Fields that check what is typed into them.
class TestValidation : public QObject {
    Q_OBJECT

private slots:
    void keepsWhatIsTyped();
    void checksAnUntouchedField();
    void takesTheProgramsTextUnchecked();
    void checksNumbers_data();
    void checksNumbers();
    void announcesNumbers();
};

void TestValidation::keepsWhatIsTyped() {
    ValidatableText field;
    field.setValidator(refuseEmpty);
    Journal journal(&field);
    QVERIFY(field.get_IsValid());
    field.set_Text(QStringLiteral("a"));
    QCOMPARE(journal.take(), QStringList{"text a"});
    field.setProperty("Text", "throw");
    QCOMPARE(journal.take(), QStringList({"error нельзя", "invalid", "text throw"}));
    field.set_Text(QString());
    QCOMPARE(journal.take(), QStringList({"error пусто", "invalid", "text "}));
    QCOMPARE(field.property("Text").toString(), QString());
    QCOMPARE(field.property("Error").toString(), QStringLiteral("пусто"));
    QCOMPARE(field.property("IsValid").toBool(), false);
    field.set_Text(QString());
    QCOMPARE(journal.take(), QStringList());
    field.set_Text(QStringLiteral("b"));
    QCOMPARE(journal.take(), QStringList({"error ", "valid", "text b"}));
}

void TestValidation::checksAnUntouchedField() {
    ValidatableText field;
    Journal journal(&field);
    QVERIFY(field.CheckAndSetFocus());
    field.setValidator(refuseEmpty);
    QVERIFY(field.get_IsValid());
    QVERIFY(!field.CheckAndSetFocus());
    QCOMPARE(journal.take(), QStringList({"error пусто", "invalid", "focus"}));
    QVERIFY(!field.CheckAndSetFocus());
    QCOMPARE(journal.take(), QStringList{"focus"});
}

void TestValidation::takesTheProgramsTextUnchecked() {
    ValidatableText field;
    field.setValidator(refuseEmpty);
    field.set_Text(QStringLiteral("throw"));
    Journal journal(&field);
    field.SetText(QString());
    QCOMPARE(journal.take(), QStringList({"error ", "valid", "text "}));
    field.SetText(QStringLiteral("throw"));
    QCOMPARE(journal.take(), QStringList{"text throw"});
}

void TestValidation::checksNumbers_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("conversionError");
    QTest::addColumn<QString>("error");
    const QString none;
    QTest::newRow("number") << "12" << none << none;
    QTest::newRow("negative number") << "-7" << none << none;
    QTest::newRow("number with a letter") << "12a" << none << "Cannot convert";
    QTest::newRow("letter, text of its own") << "12a"
                                             << "не число"
                                             << "не число";
    QTest::newRow("beyond the range of int") << "2147483648" << none << "Cannot convert";
    QTest::newRow("hexadecimal") << "0x10" << none << "Cannot convert";
    QTest::newRow("refused as a text, so not converted") << ""
                                                         << "не число"
                                                         << "пусто";
    QTest::newRow("refused as a value") << "500"
                                        << "не число"
                                        << "много";
    QTest::newRow("value that makes the check throw") << "13" << none << "нельзя";
    QTest::newRow("the same, text of its own") << "13"
                                               << "не число"
                                               << "не число";
}

void TestValidation::checksNumbers() {
    QFETCH(QString, text);
    QFETCH(QString, conversionError);
    ValidatableInt32 field;
    field.setConversionError(conversionError);
    field.setValidator(refuseEmpty);
    field.setValueValidator([](ValidatableText::ValidationArgs *args, const int &value) {
        if (value > 100)
            args->error = QStringLiteral("много");
        else if (value == 13)
            throw Exception("нельзя");
    });
    field.set_Text(text);
    field.CheckAndSetFocus();
    QTEST(field.get_Error(), "error");
    QCOMPARE(field.get_Text(), text);
}

void TestValidation::announcesNumbers() {
    ValidatableInt32 field;
    QSignalSpy changed(&field, &ValidatableInt32::changed_Value);
    QVERIFY_EXCEPTION_THROWN(field.get_IntValue(), ConveterException);
    field.setProperty("IntValue", -5);
    QCOMPARE(field.get_Text(), QStringLiteral("-5"));
    field.set_Text(QStringLiteral("-5x"));
    QVERIFY_EXCEPTION_THROWN(field.get_IntValue(), ConveterException);
    field.set_Text(QStringLiteral("-05"));
    QCOMPARE(changed, (QList<QList<QVariant>>{{-5}}));
    field.set_Text(QStringLiteral("6"));
    QCOMPARE(changed, (QList<QList<QVariant>>{{-5}, {6}}));
    QCOMPARE(field.property("IntValue").toInt(), 6);
}

DESK_CORE_TEST_MAIN(TestValidation)
#include "TestValidation.moc"
