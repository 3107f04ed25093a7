#include "DeskTest.h"
#include "Files.h"
#include "core/settings/ProfileFile.h"
#include "core/settings/StatisticsSettings.h"
#include "viewmodels/statistics/StatisticsViewModel.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>

/// The profile: what the reference files offer, what is accepted, and what is stored.
class TestProfile : public QObject {
    Q_OBJECT

private slots:
    void init();
    void textsAreChecked_data();
    void textsAreChecked();
    void listsFollowOneAnother();
    void profileIsStoredAndRestored();
    void filesAreJudged_data();
    void filesAreJudged();
    void isAskedForUntilComplete();
    void shippedFilesAreWhole();
    void filesAreMadeOfTables();

private:
    /// Writes a reference file of these records.
    void put(const char *file, const QByteArrayList &records) const;
    std::unique_ptr<StatisticsViewModel> open() const {
        return std::make_unique<StatisticsViewModel>(m_folder->path(), nullptr);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestProfile::put(const char *file, const QByteArrayList &records) const {
    const QByteArray all = records.join("},{\"data\":");
    QVERIFY(save(m_folder->filePath(file), "{\"records\":[{\"data\":" + all + "}]}"));
}

void TestProfile::init() {
    ProfileFile::organisation().clear();
    ProfileFile::userInfo().clear();
    StatisticsSettings().FillOrganisationUserInfo = true;
    m_folder = std::make_unique<QTemporaryDir>();
    put("Regions.json", {R"({"ID":77,"SUBJECT":"Москва"})",
                         R"({"ID":1,"SUBJECT":"Республика Адыгея"})", R"({"ID":2})"});
    const QByteArray clinic = R"({"id":1,"organizationType":1,"deleteDate":null,)";
    const QByteArray moscow = clinic + R"("regionId":77,)";
    put("Clinics.json",
        {moscow + R"("nameShort":"Яуза","nameFull":"Клиника «Яуза»"})",
         moscow + R"("nameShort":"азов"})",
         moscow + R"("nameFull":"Больница","areaName":"зеленоград"})",
         moscow + R"("nameShort":"Вторая","nameFull":"Вторая больница","areaName":"Зеленоград"})",
         R"({"id":1,"organizationType":1,"deleteDate":"2020-01-01","regionId":77,)"
         R"("nameShort":"Закрытая","areaName":"Троицк"})",
         R"({"id":1,"organizationType":2,"deleteDate":null,"regionId":77,)"
         R"("nameShort":"Аптека","areaName":"Троицк"})",
         clinic + R"("regionId":99,"nameShort":"Чужая","areaName":"Троицк"})",
         moscow + R"("areaName":"Троицк"})",
         clinic + R"("regionId":1,"nameShort":"Майкопская","areaName":"Майкоп",)"
                  R"("ogrn":"1020100000001","oid":"1.2.643.5"})"});
    put("Specialisations.json",
        {R"({"ID":1,"NAME":"Терапия","PARENT":"0"})",
         R"({"ID":2,"NAME":"аллергология","PARENT":"0"})",
         R"({"ID":3,"NAME":"Гастроэнтерология","PARENT":"1"})", R"({"ID":4,"NAME":"Хирургия"})"});
}

void TestProfile::textsAreChecked_data() {
    columns<QString, QString, QString>("field", "text", "error");
    const QString forbidden("Недопустимые символы: ! \" № # $ % ^ & * + = ~ ' ; :");
    row("no room", "WorkRoom", "", "");
    row("ten characters", "WorkRoom", "каб. 212/3", "");
    row("eleven", "WorkRoom", "каб. 212/34", "Название кабинета не может превышать 10 символов");
    row("a number sign", "WorkRoom", "№ 212", forbidden);
    row("a backquote", "WorkRoom", "2`2", forbidden);
    row("a mark within", "WorkRoom", "21:2", forbidden);
    const QString blanks("Каждое слово должно быть разделено одним пробелом, без лишних пробелов в "
                         "начале или в конце");
    row("first and last", "UserFullName", "Иванов Иван", "");
    row("a hyphen and initials", "UserFullName", "Петров-Водкин К. С.", "");
    row("brackets", "UserFullName", "Иванов И. И. (Петров)", "");
    row("a Roman number", "UserFullName", "Иванов Иван IV", "");
    row("nothing", "UserFullName", "", "Поле обязательно для заполнения!");
    row("one word", "UserFullName", "Иванов", "Укажите ФИО полностью");
    row("255 characters", "UserFullName", "Я " + QString(253, QChar(0x44B)), "");
    row("256 characters", "UserFullName", "Я " + QString(254, QChar(0x44B)),
        "ФИО не может превышать 255 символов");
    row("an open bracket", "UserFullName", "Иванов (Иван", "Пропущена закрывающая скобка");
    row("a closed bracket", "UserFullName", "Иванов Иван)", "Не проставлена открывающая скобка");
    row("two blanks", "UserFullName", "Иванов  Иван", blanks);
    row("a blank at the end", "UserFullName", "Иванов Иван ", blanks);
    row("Latin", "UserFullName", "Ivanov Ivan", "Некорректное ФИО");
    row("brackets the wrong way", "UserFullName", "Иванов )Иван(", "Некорректное ФИО");
}

void TestProfile::textsAreChecked() {
    QFETCH(QString, field);
    QFETCH(QString, text);
    const auto profile = open();
    auto *edited = profile->property(qPrintable(field)).value<ValidatableText *>();
    edited->set_Text(text);
    QTEST(edited->get_Error(), "error");
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
    row("no organisations", "Clinics.json", QByteArray(), "json file was not found ");
    row("cut off", "Regions.json", QByteArray("{\"records\":[{"), "Failed to parse json file ");
    row("empty", "Clinics.json", QByteArray(""), "Failed to parse json file ");
    row("a list", "Regions.json", QByteArray("[]"),
        "json file has incorrect format, root expected to be 'records' element with list "
        "inside of it ");
    row("no list", "Specialisations.json", QByteArray("{\"records\":{}}"),
        "json file has incorrect format, root expected to be 'records' element with list "
        "inside of it ");
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
    const QStringList arguments =
        QString("build --regions %1/regions.csv --clinics %1/clinics.csv --specialisations "
                "%1/specialisations.json --column SUBJECT=name --column ID=code %1/out")
            .arg(m_folder->path())
            .split(' ');
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
