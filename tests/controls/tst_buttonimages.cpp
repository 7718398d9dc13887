// The images of the two image-drawn buttons, set through their properties as a form sets them:
// the "@2x" file on a screen of device pixel ratio 2 (the whole suite runs on one, see main()),
// the sizeHint, a name that does not load, and mirroring.

#include "ButtonTestSupport.h"

#include "Kiv_ImmediateActionButton.h"
#include "Kiv_PlayButton.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace ButtonTest;

class tst_ButtonImages : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void images_data();
    void images();
    void reversed_data();
    void reversed();

private:
    QTemporaryDir mDir;
    QString mOldResourcePath;
};

namespace {

std::unique_ptr<QWidget> makeButton(const QString &iKind, const QString &iImage)
{
    std::unique_ptr<QWidget> button;
    if (iKind == QLatin1String("immediate"))
        button = std::make_unique<Kiv_ImmediateActionButton>();
    else
        button = std::make_unique<Kiv_PlayButton>();
    if (!iImage.isEmpty())
        button->setProperty("normalImage", iImage.toUtf8());
    return button;
}

// A test image: one colour with a black left column, so its mirror image differs.
void writeImage(const QString &iPath, QSize iSize, QColor iColour)
{
    QImage image(iSize, QImage::Format_ARGB32);
    image.fill(iColour);
    for (int y = 0; y < iSize.height(); ++y)
        image.setPixelColor(0, y, Qt::black);
    QVERIFY(image.save(iPath));
}

// The file as shown at device pixel ratio 2: a file without a 2x version drawn twice as large.
QImage shown(const QString &iFile, bool iMirrored = false)
{
    QImage image = resourceImage(iFile).mirrored(iMirrored, false);
    if (!iFile.contains(QLatin1String("@2x")))
        image = image.scaled(image.size() * 2, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    return image;
}

} // namespace

void tst_ButtonImages::initTestCase()
{
    QCOMPARE(qApp->devicePixelRatio(), 2.0);
    QVERIFY(mDir.isValid());
    writeImage(mDir.filePath(QStringLiteral("Wide.png")), QSize(48, 20), Qt::blue);
    writeImage(mDir.filePath(QStringLiteral("Sharp.png")), QSize(24, 24), Qt::green);
    writeImage(mDir.filePath(QStringLiteral("Sharp@2x.png")), QSize(48, 48), Qt::red);
    mOldResourcePath = Kib_Resource::getResourcePath();
    Kib_Resource::setResourcePath(mDir.path());
}

void tst_ButtonImages::cleanupTestCase()
{
    Kib_Resource::setResourcePath(mOldResourcePath);
}

void tst_ButtonImages::images_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QStringList>("images"); // set one after the other
    QTest::addColumn<QSize>("expectedSize"); // device-independent
    QTest::addColumn<QString>("expectedFile"); // shown; empty: none

    for (const char *kind : { "immediate", "play" }) {
        QTest::addRow("%s: none", kind) << kind << QStringList() << QSize(32, 32) << "";
        QTest::addRow("%s: 1x only", kind)
            << kind << QStringList { "Wide.png" } << QSize(48, 20) << "Wide.png";
        QTest::addRow("%s: with 2x", kind)
            << kind << QStringList { "Sharp.png" } << QSize(24, 24) << "Sharp@2x.png";
        QTest::addRow("%s: missing keeps the old", kind)
            << kind << QStringList { "Wide.png", "Gone.png" } << QSize(48, 20) << "Wide.png";
    }
}

void tst_ButtonImages::images()
{
    QFETCH(QString, kind);
    QFETCH(QStringList, images);
    QFETCH(QSize, expectedSize);
    QFETCH(QString, expectedFile);

    if (images.contains(QLatin1String("Gone.png")))
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot load .*Gone.png"));
    auto button = makeButton(kind, QString());
    for (const QString &image : images)
        button->setProperty("normalImage", image.toUtf8());
    QCOMPARE(button->property("normalImage").toString(), images.value(images.size() - 1));
    QCOMPARE(button->sizeHint(), expectedSize);
    if (!expectedFile.isEmpty())
        QVERIFY(render(button.get()) == shown(expectedFile));
}

void tst_ButtonImages::reversed_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("reverseFirst"); // before the image is set, else after
    QTest::addColumn<QString>("image");
    QTest::addColumn<QString>("expectedFile");

    for (const char *kind : { "immediate", "play" }) {
        QTest::addRow("%s: reversed, then image", kind) << kind << true << "Sharp.png"
                                                        << "Sharp@2x.png";
        QTest::addRow("%s: image, then reversed", kind) << kind << false << "Sharp.png"
                                                        << "Sharp@2x.png";
        QTest::addRow("%s: 1x only", kind) << kind << false << "Wide.png"
                                           << "Wide.png";
    }
}

void tst_ButtonImages::reversed()
{
    QFETCH(QString, kind);
    QFETCH(bool, reverseFirst);
    QFETCH(QString, image);
    QFETCH(QString, expectedFile);

    auto button = makeButton(kind, reverseFirst ? QString() : image);
    QVERIFY(button->setProperty("imageReversed", true));
    if (reverseFirst)
        button->setProperty("normalImage", image.toUtf8());
    QVERIFY(render(button.get()) == shown(expectedFile, true));
    QVERIFY(button->setProperty("imageReversed", false));
    QVERIFY(render(button.get()) == shown(expectedFile));
}

int main(int argc, char **argv)
{
    qputenv("QT_SCALE_FACTOR", "2");
    QApplication app(argc, argv);
    tst_ButtonImages test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_buttonimages.moc"
