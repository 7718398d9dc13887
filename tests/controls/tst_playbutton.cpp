// Kiv_PlayButton: the play-state and enabled-state models choose the image and gate the press.

#include "ButtonTestSupport.h"

#include "Bnde_SimpleValue.h"
#include "Kiv_PlayButton.h"

#include <QtTest>

using namespace ButtonTest;

namespace {
const QByteArray cNormal = "Images/Buttons/PlayNormal.png";
const QByteArray cCueing = "Images/Buttons/PlayCueing.png";
const QByteArray cPlaying = "Images/Buttons/PlayPlaying.png";
const QByteArray cDisabled = "Images/Buttons/PlayDisabled.png";

bool shows(Kiv_PlayButton &iButton, const QByteArray &iImage)
{
    return render(&iButton) == resourceImage(QString::fromUtf8(iImage));
}
} // namespace

class tst_PlayButton : public QObject
{
    Q_OBJECT

private slots:
    void states_data();
    void states();
};

void tst_PlayButton::states_data()
{
    QTest::addColumn<QString>("playState");
    QTest::addColumn<QByteArray>("enabledConn");
    QTest::addColumn<bool>("canPlay");
    QTest::addColumn<QByteArray>("image");

    const QByteArray conn = "Deck.canPlay";
    QTest::newRow("playing") << "playing" << conn << true << cPlaying;
    QTest::newRow("cueing") << "cueing" << conn << true << cCueing;
    QTest::newRow("stopped") << "stopped" << conn << true << cNormal;
    QTest::newRow("other case") << "Playing" << conn << true << cNormal;
    QTest::newRow("disabled") << "playing" << conn << false << cDisabled;
    QTest::newRow("no enabled model") << "playing" << QByteArray() << false << cPlaying;
}

void tst_PlayButton::states()
{
    QFETCH(QString, playState);
    QFETCH(QByteArray, enabledConn);
    QFETCH(bool, canPlay);
    QFETCH(QByteArray, image);

    RecordingAction action;
    Bnde_SimpleValue<QString> state(QStringLiteral("Deck.PlayState"), playState);
    Bnde_SimpleValue<bool> enabled(QStringLiteral("Deck.canPlay"), canPlay);
    QVERIFY(state.Publish() && enabled.Publish());
    Kiv_PlayButton button(nullptr, "play", QStringLiteral("Test.act()"),
                          QStringLiteral("Deck.PlayState"));
    button.setNormalImage(cNormal);
    button.setCueingImage(cCueing);
    button.setPlayingImage(cPlaying);
    button.setDisabledImage(cDisabled);
    button.setEnabledStateConnSpec(enabledConn);
    button.makeConnections(Bnd_ConnectionEnvironmentPtr());
    QVERIFY(shows(button, image));

    // A press runs the script once unless disabled; holding and releasing add nothing.
    QTest::mousePress(&button, Qt::LeftButton);
    advance(3000);
    QTest::mouseRelease(&button, Qt::LeftButton);
    QCOMPARE(action.count(), int(image != cDisabled));
    if (image != cDisabled)
        return;
    // Enabled again while playing: the normal image, until the play state changes.
    enabled.setValue(true);
    QVERIFY(shows(button, cNormal));
    state.setValue(QStringLiteral("cueing"));
    QVERIFY(shows(button, cCueing));
}

QTEST_MAIN(tst_PlayButton)
#include "tst_playbutton.moc"
