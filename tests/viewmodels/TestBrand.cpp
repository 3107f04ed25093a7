#include "DeskTest.h"

#include <QFile>
#include <QIcon>
#include <QtEndian>

#include <algorithm>

/// The brand's pictures and sounds, as the program finds them in its resources.
class TestBrand : public QObject {
    Q_OBJECT

private slots:
    void hasAnIconOfEachSize_data();
    void hasAnIconOfEachSize();
    void hasPicturesOfDoubleScale_data();
    void hasPicturesOfDoubleScale();
    void hasPlainSounds_data();
    void hasPlainSounds();
};

void TestBrand::hasAnIconOfEachSize_data() {
    QTest::addColumn<int>("size");
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256})
        QTest::addRow("%d pixels", size) << size;
}

void TestBrand::hasAnIconOfEachSize() {
    QFETCH(int, size);
    QVector<QImage> greys;
    for (const char *name : {"default", "warning"}) {
        const QIcon icon(QStringLiteral(":/replaceable/%1_icon.ico").arg(QLatin1String(name)));
        QVERIFY(icon.availableSizes().contains(QSize(size, size)));
        const QImage image = icon.pixmap(size).toImage();
        QCOMPARE(image.size(), QSize(size, size));
        greys << image.convertToFormat(QImage::Format_Grayscale8);
    }
    int different = 0;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x)
            different += qAbs(qGray(greys[0].pixel(x, y)) - qGray(greys[1].pixel(x, y))) > 40;
    }
    QVERIFY2(different * 5 > size * size,
             qPrintable(QStringLiteral("alike without colours: %1 pixels differ").arg(different)));
}

void TestBrand::hasPicturesOfDoubleScale_data() {
    QTest::addColumn<QSize>("size");
    QTest::newRow("splashScreen") << QSize(480, 300);
    QTest::newRow("logo_white_medium") << QSize(118, 32);
    QTest::newRow("normal_logo") << QSize(133, 36);
}

void TestBrand::hasPicturesOfDoubleScale() {
    QFETCH(QSize, size);
    const QString path = QStringLiteral(":/replaceable/") + QLatin1String(QTest::currentDataTag());
    const QImage picture(path + QStringLiteral(".png"));
    QCOMPARE(picture.size(), size);
    QCOMPARE(QImage(path + QStringLiteral("@2x.png")).size(), size * 2);
    QCOMPARE(qAlpha(picture.pixel(0, 0)), 0);
}

void TestBrand::hasPlainSounds_data() {
    QTest::addColumn<bool>("isRising");
    QTest::newRow("SpeechOn") << true;
    QTest::newRow("SpeechOff") << false;
}

void TestBrand::hasPlainSounds() {
    QFETCH(bool, isRising);
    QFile file(QStringLiteral(":/Assets/%1.wav").arg(QLatin1String(QTest::currentDataTag())));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    QCOMPARE(content.mid(36, 4), QByteArrayLiteral("data"));
    QCOMPARE(qFromLittleEndian<qint32>(content.constData() + 24), 22050);
    const int count = (content.size() - 44) / 2;
    QCOMPARE(qFromLittleEndian<qint32>(content.constData() + 40), count * 2);
    QVERIFY(count <= 22050 / 4);
    QVector<qint16> sound(count);
    qFromLittleEndian<qint16>(content.constData() + 44, count, sound.data());
    QVERIFY(*std::max_element(sound.cbegin(), sound.cend()) <= 8192); // a quarter of full scale
    const auto crossings = [&](int from, int to) {
        int result = 0;
        for (int i = from + 1; i < to; ++i)
            result += (sound[i] < 0) != (sound[i - 1] < 0);
        return result;
    };
    const int window = 22050 / 20;
    QCOMPARE(crossings(count - 2 * window, count - window) > crossings(0, window), isRising);
}

DESK_TEST_MAIN(TestBrand, VirtualDesk::Screen)
#include "TestBrand.moc"
