#include "DeskTest.h"
#include "Files.h"
#include "core/settings/ProfileFile.h"
#include "core/settings/StatisticsSettings.h"
#include "viewmodels/statistics/StatisticsViewModel.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace {

QJsonObject organisation(int region, const QString &shortName, const QString &fullName,
                         const QString &area) {
    QJsonObject data{{"id", 1}, {"regionId", region}, {"organizationType", 1}};
    data["deleteDate"] = QJsonValue::Null;
    for (const auto &[key, text] : {std::pair<const char *, QString>{"nameShort", shortName},
                                    {"nameFull", fullName},
                                    {"areaName", area}}) {
        if (!text.isNull())
            data[key] = text;
    }
    return data;
}

QJsonObject with(QJsonObject data, const char *key, const QJsonValue &value) {
    data[key] = value;
    return data;
}

} // namespace

/// The profile: what the reference files offer, what is accepted, and what is stored.
class TestProfile : public QObject {
    Q_OBJECT

private slots:
    void init();
    void namesAreChecked_data();
    void namesAreChecked();
    void roomsAreChecked_data();
    void roomsAreChecked();
    void listsFollowOneAnother();
    void profileIsStoredAndRestored();
    void filesAreJudged_data();
    void filesAreJudged();
    void isAskedForUntilComplete();
    void shippedFilesAreWhole();
    void filesAreMadeOfTables();

private:
    void put(const char *file, const QList<QJsonObject> &records) const;
    std::unique_ptr<StatisticsViewModel> open() const {
        return std::make_unique<StatisticsViewModel>(m_folder->path(), nullptr);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestProfile::put(const char *file, const QList<QJsonObject> &records) const {
    QJsonArray array;
    for (const QJsonObject &record : records)
        array.append(QJsonObject{{"data", record}});
    QVERIFY(
        save(m_folder->filePath(file), QJsonDocument(QJsonObject{{"records", array}}).toJson()));
}

void TestProfile::init() {
    ProfileFile::organisation().clear();
    ProfileFile::userInfo().clear();
    StatisticsSettings().FillOrganisationUserInfo = true;
    m_folder = std::make_unique<QTemporaryDir>();
    put("Regions.json", {{{"ID", 77}, {"SUBJECT", "Москва"}},
                         {{"ID", 1}, {"SUBJECT", "Республика Адыгея"}},
                         {{"ID", 2}}});
    const QJsonObject clinic = organisation(77, "Яуза", "Клиника «Яуза»", QString());
    put("Clinics.json",
        {clinic, organisation(77, "азов", QString(), QString()),
         organisation(77, QString(), "Больница", "зеленоград"),
         organisation(77, "Вторая", "Вторая больница", "Зеленоград"),
         with(organisation(77, "Закрытая", QString(), "Троицк"), "deleteDate", "2020-01-01"),
         with(organisation(77, "Аптека", QString(), "Троицк"), "organizationType", 2),
         organisation(99, "Чужая", QString(), "Троицк"),
         organisation(77, QString(), QString(), "Троицк"),
         with(with(organisation(1, "Майкопская", QString(), "Майкоп"), "ogrn", "1020100000001"),
              "oid", "1.2.643.5")});
    put("Specialisations.json", {{{"ID", 1}, {"NAME", "Терапия"}, {"PARENT", "0"}},
                                 {{"ID", 2}, {"NAME", "аллергология"}, {"PARENT", "0"}},
                                 {{"ID", 3}, {"NAME", "Гастроэнтерология"}, {"PARENT", "1"}},
                                 {{"ID", 4}, {"NAME", "Хирургия"}}});
}

void TestProfile::namesAreChecked_data() {
    columns<QString, QString>("name", "error");
    row("first and last", QString("Иванов Иван"), QString());
    row("a hyphen and initials", QString("Петров-Водкин К. С."), QString());
    row("brackets", QString("Иванов И. И. (Петров)"), QString());
    row("a Roman number", QString("Иванов Иван IV"), QString());
    row("nothing", QString(), QString("Поле обязательно для заполнения!"));
    row("one word", QString("Иванов"), QString("Укажите ФИО полностью"));
    row("255 characters", "Я " + QString(253, QChar(0x44B)), QString());
    row("256 characters", "Я " + QString(254, QChar(0x44B)),
        QString("ФИО не может превышать 255 символов"));
    row("an open bracket", QString("Иванов (Иван"), QString("Пропущена закрывающая скобка"));
    row("a closed bracket", QString("Иванов Иван)"), QString("Не проставлена открывающая скобка"));
    row("two blanks", QString("Иванов  Иван"),
        QString("Каждое слово должно быть разделено одним пробелом, без лишних пробелов в начале "
                "или в конце"));
    row("a blank at the end", QString("Иванов Иван "),
        QString("Каждое слово должно быть разделено одним пробелом, без лишних пробелов в начале "
                "или в конце"));
    row("Latin", QString("Ivanov Ivan"), QString("Некорректное ФИО"));
    row("brackets the wrong way", QString("Иванов )Иван("), QString("Некорректное ФИО"));
}

void TestProfile::namesAreChecked() {
    QFETCH(QString, name);
    const auto profile = open();
    profile->get_UserFullName()->set_Text(name);
    QTEST(profile->get_UserFullName()->get_Error(), "error");
}

void TestProfile::roomsAreChecked_data() {
    columns<QString, QString>("room", "error");
    const QString forbidden("Недопустимые символы: ! \" № # $ % ^ & * + = ~ ' ; :");
    row("none", QString(), QString());
    row("ten characters", QString("каб. 212/3"), QString());
    row("eleven", QString("каб. 212/34"),
        QString("Название кабинета не может превышать 10 символов"));
    row("a number sign", QString("№ 212"), forbidden);
    row("a backquote", QString("2`2"), forbidden);
    row("a mark within", QString("21:2"), forbidden);
}

void TestProfile::roomsAreChecked() {
    QFETCH(QString, room);
    const auto profile = open();
    profile->get_WorkRoom()->set_Text(room);
    QTEST(profile->get_WorkRoom()->get_Error(), "error");
}

void TestProfile::listsFollowOneAnother() {
    QTest::ignoreMessage(QtWarningMsg, "Invalid regions: 1/3");
    QTest::ignoreMessage(QtWarningMsg, "Invalid organisations: 4/9");
    QTest::ignoreMessage(QtWarningMsg, "Invalid professions: 2/4");
    const auto profile = open();
    QCOMPARE(profile->get_Regions(), QStringList({"[01] Республика Адыгея", "[77] Москва"}));
    QCOMPARE(profile->get_Professions(), QStringList({"аллергология", "Терапия"}));
    QVERIFY(!profile->get_IsRegionSelected());
    profile->set_SelectedRegionIndex(1);
    QCOMPARE(profile->get_Cities(), QStringList({"зеленоград", "Зеленоград", "Москва"}));
    profile->set_SelectedCityIndex(2);
    QCOMPARE(profile->get_Companies(), QStringList({"азов", "Яуза"}));
    profile->set_SelectedCompanyIndex(1);
    profile->set_SelectedCityIndex(0);
    QCOMPARE(profile->get_Companies(), QStringList("Больница"));
    QVERIFY(!profile->get_IsCompanySelected());
    profile->set_SelectedCompanyIndex(0);

    QSignalSpy cities(profile.get(), &StatisticsViewModel::changed_Cities);
    profile->set_SelectedRegionIndex(0);
    QCOMPARE(profile->get_Cities(), QStringList("Майкоп"));
    QCOMPARE(cities.size(), 1);
    QVERIFY(!profile->get_IsCitySelected() && !profile->get_IsCompanySelected());
}

void TestProfile::profileIsStoredAndRestored() {
    auto profile = open();
    QSignalSpy valid(profile.get(), &StatisticsViewModel::changed_IsValid);
    profile->set_SelectedRegionIndex(1);
    profile->set_SelectedCityIndex(2);
    profile->set_SelectedCompanyIndex(0);
    profile->set_SelectedProfessionIndex(1);
    QVERIFY2(!profile->get_IsValid(), "a name is missing");
    profile->applyCommand();
    QVERIFY(profile->get_NeedShow());
    profile->get_UserFullName()->set_Text("Иванов Иван");
    QVERIFY(profile->get_IsValid());
    profile->get_WorkRoom()->set_Text("№");
    QVERIFY(!profile->get_IsValid());
    profile->get_WorkRoom()->set_Text("212");
    QCOMPARE(valid.size(), 3);
    profile->applyCommand();
    QVERIFY(!profile->get_NeedShow());
    QCOMPARE(profile->get_Regions(), QStringList());

    const ProfileFile file = ProfileFile::organisation();
    QCOMPARE(file.text("Organisation/RegionCode"), QString("77"));
    QCOMPARE(file.text("Organisation/RegionName"), QString("Москва"));
    QCOMPARE(file.text("Organisation/AreaName"), QString("Москва"));
    QCOMPARE(file.text("Organisation/OrganisationName"), QString("азов"));
    QVERIFY2(!file.text("Organisation/OrganisationFullName").isEmpty(),
             "without one the profile would be asked for for ever");
    QVERIFY2(!open()->get_NeedShow(), "the profile is complete");

    // Asked for again, it begins with what is known.
    ProfileFile::userInfo().setText("UserInfo/UserName", QString());
    profile = open();
    QVERIFY(profile->get_NeedShow());
    QCOMPARE(profile->get_SelectedRegionIndex(), 1);
    QCOMPARE(profile->get_SelectedCityIndex(), 2);
    QCOMPARE(profile->get_SelectedCompanyIndex(), 0);
    QCOMPARE(profile->get_SelectedProfessionIndex(), 1);
    QCOMPARE(profile->get_WorkRoom()->get_Text(), QString("212"));
}

void TestProfile::filesAreJudged_data() {
    columns<QString, QByteArray, QString>("file", "content", "log");
    row("no organisations", QString("Clinics.json"), QByteArray(),
        QString("json file was not found "));
    row("cut off", QString("Regions.json"), QByteArray("{\"records\":[{"),
        QString("Failed to parse json file "));
    row("empty", QString("Clinics.json"), QByteArray(""), QString("Failed to parse json file "));
    row("a list", QString("Regions.json"), QByteArray("[]"),
        QString("json file has incorrect format, root expected to be 'records' element with list "
                "inside of it "));
    row("no list", QString("Specialisations.json"), QByteArray("{\"records\":{}}"),
        QString("json file has incorrect format, root expected to be 'records' element with list "
                "inside of it "));
}

void TestProfile::filesAreJudged() {
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QString, log);
    const QString path = m_folder->filePath(file);
    if (content.isNull())
        QVERIFY(QFile::remove(path));
    else
        QVERIFY(save(path, content));
    QTest::ignoreMessage(QtCriticalMsg,
                         QRegularExpression('^' + QRegularExpression::escape(log + path)));
    QTest::ignoreMessage(QtWarningMsg, "Failed to load regions or organisations from file");
    const auto profile = open();
    QVERIFY(!profile->get_LoadError().isEmpty());
    QVERIFY(!profile->get_IsValid());
    QVERIFY(profile->get_NeedShow());
}

void TestProfile::isAskedForUntilComplete() {
    StatisticsSettings().FillOrganisationUserInfo = false;
    QVERIFY(!open()->get_NeedShow());
    QCOMPARE(open()->get_Regions(), QStringList());
}

void TestProfile::shippedFilesAreWhole() {
    desk().run(SOURCE "/scripts/reference-data", {"check", SOURCE "/reference"});
    ReferenceData data(SOURCE "/reference");
    QVERIFY(data.Load());
    QCOMPARE(data.regions().size(), 89);
    QCOMPARE(data.regions().find(77)->displayName(), QString("[77] Город Москва"));
    for (const StatisticsRegion &region : data.regions()) {
        for (const StatisticsCity &city : region.cities()) {
            for (const StatisticsOrganisation &organisation : city.organisations())
                QVERIFY(organisation.displayName().startsWith("ОБРАЗЕЦ"));
        }
    }
}

void TestProfile::filesAreMadeOfTables() {
    // In Windows-1251: "Москва".
    QVERIFY(save(m_folder->filePath("regions.csv"), "code;name\n77;\xcc\xee\xf1\xea\xe2\xe0\n"));
    QVERIFY(save(m_folder->filePath("clinics.csv"),
                 "id,regionId,organizationType,nameShort,areaName\n1,77,1,\"Яуза, клиника\",\n"));
    QVERIFY(save(m_folder->filePath("specialisations.json"),
                 R"([{"ID": 1, "NAME": "Терапия", "PARENT": 0}])"));
    const QStringList arguments{"build",
                                "--regions",
                                m_folder->filePath("regions.csv"),
                                "--clinics",
                                m_folder->filePath("clinics.csv"),
                                "--specialisations",
                                m_folder->filePath("specialisations.json"),
                                "--column",
                                "SUBJECT=name",
                                "--column",
                                "ID=code",
                                m_folder->filePath("out")};
    desk().run(SOURCE "/scripts/reference-data", arguments);
    ReferenceData data(m_folder->filePath("out"));
    QVERIFY(data.Load());
    QCOMPARE(data.professions(), QStringList("Терапия"));
    const StatisticsCity &city = data.regions().find(77)->cities().front();
    QCOMPARE(city.name() + ": " + city.organisations().front().displayName(),
             QString("Москва: Яуза, клиника"));

    // A clinic of no region leaves what is there.
    QVERIFY(save(m_folder->filePath("clinics.csv"),
                 "id,regionId,organizationType,nameShort\n1,,1,A\n"));
    QVERIFY(desk().ask(SOURCE "/scripts/reference-data", arguments).isEmpty());
    QVERIFY(ReferenceData(m_folder->filePath("out")).Load());
}

DESK_CORE_TEST_MAIN(TestProfile)
#include "TestProfile.moc"
