// The image-drawn buttons' images at device pixel ratio 2: "@2x" files, failed loads, mirroring.

#include "ButtonTestSupport.h"

#include "Kiv_ImmediateActionButton.h"
#include "Kiv_PlayButton.h"

#include <QTemporaryDir>
#include <QtTest>

[[maybe_unused]] static const bool cScaled = qputenv("QT_SCALE_FACTOR", "2"); // before main

// The file as shown at device pixel ratio 2: a file without a 2x version drawn twice as large.
static QImage shown(const QString &iFile, bool iMirrored)
{
    QImage image = ButtonTest::resourceImage(iFile).mirrored(iMirrored, false);
    if (!iFile.contains(QLatin1String("@2x")))
        image = image.scaled(image.size() * 2, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    return image;
}

class tst_ButtonImages : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void images_data();
    void images();
};

void tst_ButtonImages::initTestCase()
{
    static QTemporaryDir dir;
    const auto write = [](const char *iName, QSize iSize, QColor iColour) {
        QImage image(iSize, QImage::Format_ARGB32);
        image.fill(iColour);
        image.setPixelColor(0, 0, Qt::black); // so that the mirror image differs
        return image.save(dir.filePath(iName));
    };
    QVERIFY(write("Wide.png", { 48, 20 }, Qt::blue) && write("Sharp.png", { 24, 24 }, Qt::green)
            && write("Sharp@2x.png", { 48, 48 }, Qt::red));
    Kib_Resource::setResourcePath(dir.path());
}

void tst_ButtonImages::images_data()
{
    QTest::addColumn<bool>("play"); // else the immediate action button
    QTest::addColumn<QStringList>("images"); // set one after the other, reversed
    QTest::addColumn<QString>("file"); // shown

    for (bool play : { false, true }) {
        QTest::addRow("%d: with 2x", play) << play << QStringList { "Sharp.png" } << "Sharp@2x.png";
        QTest::addRow("%d: 1x only, missing keeps the old", play)
            << play << QStringList { "Wide.png", "Gone.png" } << "Wide.png";
    }
}

void tst_ButtonImages::images()
{
    QFETCH(bool, play);
    QFETCH(QStringList, images);
    QFETCH(QString, file);

    if (images.contains(QLatin1String("Gone.png")))
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot load .*Gone.png"));
    const std::unique_ptr<QWidget> button(play ? static_cast<QWidget *>(new Kiv_PlayButton)
                                               : new Kiv_ImmediateActionButton);
    QVERIFY(button->setProperty("imageReversed", true)); // before the image
    for (const QString &image : images)
        button->setProperty("normalImage", image.toUtf8());
    QCOMPARE(button->sizeHint(), shown(file, false).size() / 2);
    QVERIFY(ButtonTest::render(button.get()) == shown(file, true));
    QVERIFY(button->setProperty("imageReversed", false));
    QVERIFY(ButtonTest::render(button.get()) == shown(file, false));
    QVERIFY(button->setProperty("imageReversed", true)); // after the image
    QVERIFY(ButtonTest::render(button.get()) == shown(file, true));
}

QTEST_MAIN(tst_ButtonImages)
#include "tst_buttonimages.moc"
