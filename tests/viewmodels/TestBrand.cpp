#include "DeskTest.h"

#include <QFile>
#include <QIcon>
#include <QtEndian>

#include <algorithm>

/// The brand's pictures and sounds, as the program finds them in its resources.
class TestBrand : public QObject {
    Q_OBJECT

private slots:
    void hasAnIconOfEachSize() {
        for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
            QVector<QImage> greys;
            for (const char *name : {"default", "warning"}) {
                const QIcon icon(QString(":/replaceable/%1_icon.ico").arg(name));
                QVERIFY2(icon.availableSizes().contains(QSize(size, size)),
                         qPrintable(QString("no %1 pixels of %2").arg(size).arg(name)));
                greys << icon.pixmap(size).toImage().convertToFormat(QImage::Format_Grayscale8);
            }
            int different = 0;
            for (int i = 0; i < size * size; ++i) {
                const QPoint place(i % size, i / size);
                different += qAbs(qGray(greys[0].pixel(place)) - qGray(greys[1].pixel(place))) > 40;
            }
            QVERIFY2(different * 5 > size * size,
                     qPrintable(QString("alike without colours: %1 pixels").arg(size)));
        }
    }

    void hasPicturesOfDoubleScale() {
        const QMap<QString, QSize> pictures{{"splashScreen", {480, 300}},
                                            {"logo_white_medium", {118, 32}},
                                            {"normal_logo", {133, 36}}};
        for (auto each = pictures.cbegin(); each != pictures.cend(); ++each) {
            const QString path = ":/replaceable/" + each.key();
            const QImage picture(path + ".png");
            QVERIFY2(picture.size() == each.value(), qPrintable(path));
            QVERIFY2(QImage(path + "@2x.png").size() == each.value() * 2, qPrintable(path));
            QVERIFY2(qAlpha(picture.pixel(0, 0)) == 0, qPrintable(path));
        }
    }

    void hasPlainSounds_data() {
        QTest::addColumn<bool>("isRising");
        QTest::newRow("SpeechOn") << true;
        QTest::newRow("SpeechOff") << false;
    }

    void hasPlainSounds() {
        QFile file(QString(":/Assets/%1.wav").arg(QTest::currentDataTag()));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray content = file.readAll();
        QCOMPARE(content.mid(36, 4), QByteArray("data"));
        QCOMPARE(qFromLittleEndian<qint32>(content.constData() + 24), 22050);
        const int count = (content.size() - 44) / 2;
        QVERIFY(count <= 22050 / 4);
        const auto *sound = reinterpret_cast<const qint16 *>(content.constData() + 44);
        QVERIFY(*std::max_element(sound, sound + count) <= 8192); // a quarter of full scale
        const int window = 22050 / 20;
        const auto crossings = [&](int from) {
            int result = 0;
            for (int i = from + 1; i < from + window; ++i)
                result += (sound[i] < 0) != (sound[i - 1] < 0);
            return result;
        };
        QTEST(crossings(count - 2 * window) > crossings(0), "isRising");
    }
};

DESK_TEST_MAIN(TestBrand, VirtualDesk::Screen)
#include "TestBrand.moc"
