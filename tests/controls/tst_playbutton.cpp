// Kiv_PlayButton: the play-state and enabled-state models choose the image, a press runs the
// script unless the button is disabled, and painting leaves the background alone.

#include "ButtonTestSupport.h"

#include "Bnde_SimpleValue.h"
#include "Kiv_PlayButton.h"

#include <QtTest>

#include <memory>

using namespace ButtonTest;

namespace {
const QByteArray cNormal = "Images/Buttons/PlayNormal.png";
const QByteArray cCueing = "Images/Buttons/PlayCueing.png";
const QByteArray cPlaying = "Images/Buttons/PlayPlaying.png";
const QByteArray cDisabled = "Images/Buttons/PlayDisabled.png";
} // namespace

class tst_PlayButton : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void states_data();
    void states();
    void enabledWhilePlaying();
    void press_data();
    void press();
    void modelGoesAway();
    void paintsOnlyTheImage();

private:
    std::unique_ptr<Kiv_PlayButton> makeButton()
    {
        auto button = std::make_unique<Kiv_PlayButton>(
            nullptr, "play", QStringLiteral("Test.act()"), QStringLiteral("Deck.PlayState"));
        button->setNormalImage(cNormal);
        button->setCueingImage(cCueing);
        button->setPlayingImage(cPlaying);
        button->setDisabledImage(cDisabled);
        button->setEnabledStateConnSpec("Deck.canPlay");
        return button;
    }
    static bool shows(Kiv_PlayButton *iButton, const QByteArray &iImage)
    {
        return render(iButton) == resourceImage(QString::fromUtf8(iImage));
    }

    std::unique_ptr<RecordingAction> mAction;
    std::unique_ptr<Bnde_SimpleValue<QString>> mPlayState;
    std::unique_ptr<Bnde_SimpleValue<bool>> mCanPlay;
};

void tst_PlayButton::init()
{
    mAction = std::make_unique<RecordingAction>();
    mPlayState = std::make_unique<Bnde_SimpleValue<QString>>(QStringLiteral("Deck.PlayState"),
                                                             QStringLiteral("stopped"));
    QVERIFY(mPlayState->Publish());
    mCanPlay = std::make_unique<Bnde_SimpleValue<bool>>(QStringLiteral("Deck.canPlay"), true);
    QVERIFY(mCanPlay->Publish());
}

void tst_PlayButton::cleanup()
{
    mCanPlay.reset();
    mPlayState.reset();
    mAction.reset();
}

void tst_PlayButton::states_data()
{
    QTest::addColumn<QString>("playState");
    QTest::addColumn<bool>("canPlay");
    QTest::addColumn<QByteArray>("expectedImage");

    QTest::newRow("playing") << "playing" << true << cPlaying;
    QTest::newRow("cueing") << "cueing" << true << cCueing;
    QTest::newRow("stopped") << "stopped" << true << cNormal;
    QTest::newRow("empty") << "" << true << cNormal;
    QTest::newRow("other case") << "Playing" << true << cNormal;
    QTest::newRow("playing, disabled") << "playing" << false << cDisabled;
    QTest::newRow("stopped, disabled") << "stopped" << false << cDisabled;
}

void tst_PlayButton::states()
{
    QFETCH(QString, playState);
    QFETCH(bool, canPlay);
    QFETCH(QByteArray, expectedImage);

    // Both models are there when the button connects.
    mPlayState->setValue(playState);
    mCanPlay->setValue(canPlay);
    auto button = makeButton();
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    QVERIFY(shows(button.get(), expectedImage));
    if (!canPlay)
        return;

    // Later play-state changes follow.
    mPlayState->setValue(QStringLiteral("x"));
    QVERIFY(shows(button.get(), cNormal));
    mPlayState->setValue(playState);
    QVERIFY(shows(button.get(), expectedImage));
}

void tst_PlayButton::enabledWhilePlaying()
{
    mPlayState->setValue(QStringLiteral("playing"));
    auto button = makeButton();
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    mCanPlay->setValue(false);
    QVERIFY(shows(button.get(), cDisabled));
    // Enabled again while playing: the normal image, until the play state changes.
    mCanPlay->setValue(true);
    QVERIFY(shows(button.get(), cNormal));
    mPlayState->setValue(QStringLiteral("cueing"));
    QVERIFY(shows(button.get(), cCueing));
}

void tst_PlayButton::press_data()
{
    QTest::addColumn<QByteArray>("enabledSpec");
    QTest::addColumn<bool>("canPlay");
    QTest::addColumn<QString>("playState");
    QTest::addColumn<int>("expectedRuns");

    QTest::newRow("enabled") << QByteArray("Deck.canPlay") << true << "stopped" << 1;
    QTest::newRow("enabled, playing") << QByteArray("Deck.canPlay") << true << "playing" << 1;
    QTest::newRow("disabled") << QByteArray("Deck.canPlay") << false << "stopped" << 0;
    QTest::newRow("no enabled model") << QByteArray() << false << "stopped" << 1;
}

void tst_PlayButton::press()
{
    QFETCH(QByteArray, enabledSpec);
    QFETCH(bool, canPlay);
    QFETCH(QString, playState);
    QFETCH(int, expectedRuns);

    mPlayState->setValue(playState);
    mCanPlay->setValue(canPlay);
    auto button = makeButton();
    button->setEnabledStateConnSpec(enabledSpec);
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    QTest::mousePress(button.get(), Qt::LeftButton);
    QCOMPARE(mAction->count(), expectedRuns);
    // Holding and releasing add nothing.
    advance(3000);
    QTest::mouseRelease(button.get(), Qt::LeftButton);
    QCOMPARE(mAction->count(), expectedRuns);
}

void tst_PlayButton::modelGoesAway()
{
    mPlayState->setValue(QStringLiteral("cueing"));
    auto button = makeButton();
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    mPlayState.reset();
    mCanPlay.reset();
    QVERIFY(shows(button.get(), cCueing));

    // A new model of the name is picked up by itself.
    Bnde_SimpleValue<QString> playState(QStringLiteral("Deck.PlayState"),
                                        QStringLiteral("playing"));
    QVERIFY(playState.Publish());
    QVERIFY(shows(button.get(), cPlaying));
}

void tst_PlayButton::paintsOnlyTheImage()
{
    // No background fill, whatever the palette: without an image nothing is drawn.
    Kiv_PlayButton button;
    button.setAutoFillBackground(false);
    QPalette palette = button.palette();
    palette.setColor(QPalette::Window, Qt::red);
    button.setPalette(palette);
    QCOMPARE(button.sizeHint(), QSize(32, 32));
    button.resize(32, 32);
    QImage image(32, 32, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    button.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    QCOMPARE(image.pixelColor(16, 16), QColor(Qt::transparent));
}

QTEST_MAIN(tst_PlayButton)
#include "tst_playbutton.moc"
