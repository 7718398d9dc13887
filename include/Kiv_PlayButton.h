#pragma once

#include "Bnd_ConnectionToModel.h"
#include "Kiv_Script.h"
#include "Kiv_WidgetConnectInterface.h"
#include "kivcore_export.h"

#include <QByteArray>
#include <QPixmap>
#include <QString>
#include <QWidget>

/// The play button of a transport bar: drawn from four images (normal, cueing, playing,
/// disabled), it runs its action script when pressed and shows the play state of a string
/// model ("playing", "cueing", anything else for stopped).
///
///     auto *play = new Kiv_PlayButton(bar, "play", "Transport.togglePlay()",
///                                     "MainMonitor.PlayState");
///     play->setNormalImage("Images/Buttons/PlayNormal.png");
///     play->setCueingImage("Images/Buttons/PlayCueing.png");
///     play->setPlayingImage("Images/Buttons/PlayPlaying.png");
///     play->setDisabledImage("Images/Buttons/PlayDisabled.png");
///     play->setEnabledStateConnSpec("Transport.canPlay");
///
/// A bool enabled-state model disables it; when that model turns true again the button shows
/// its normal image until the next play-state change.
class KIVCORE_EXPORT Kiv_PlayButton : public QWidget, public Kiv_WidgetConnectInterface
{
    Q_OBJECT
    Q_PROPERTY(QByteArray actionScript READ getActionScript WRITE setActionScript)
    Q_PROPERTY(QByteArray playStateConnSpec READ getPlayStateConnSpec WRITE setPlayStateConnSpec)
    Q_PROPERTY(
        QByteArray enabledStateConnSpec READ getEnabledStateConnSpec WRITE setEnabledStateConnSpec)
    Q_PROPERTY(QByteArray normalImage READ getNormalImage WRITE setNormalImage)
    Q_PROPERTY(QByteArray cueingImage READ getCueingImage WRITE setCueingImage)
    Q_PROPERTY(QByteArray playingImage READ getPlayingImage WRITE setPlayingImage)
    Q_PROPERTY(QByteArray disabledImage READ getDisabledImage WRITE setDisabledImage)
    Q_PROPERTY(bool imageReversed READ getImageReversed WRITE setImageReversed)

public:
    enum visualState { normal = 0, cueing = 1, playing = 2, disabled = 3 };

    explicit Kiv_PlayButton(QWidget *iParentP = nullptr, const char *iName = nullptr,
                            const QString &iActionScript = QString(),
                            const QString &iPlayStateConnSpec = QString());
    ~Kiv_PlayButton() override;

    void setActionScript(const QByteArray &iScript);
    QByteArray getActionScript() const { return mScript.text().toUtf8(); }

    /// The connection specs take effect in makeConnections(); a changed spec detaches its
    /// listener from the old model until then.
    void setPlayStateConnSpec(const QByteArray &iSpec);
    QByteArray getPlayStateConnSpec() const { return mPlayStateConnSpec; }
    void setEnabledStateConnSpec(const QByteArray &iSpec);
    QByteArray getEnabledStateConnSpec() const { return mEnabledStateConnSpec; }

    /// Image names are relative to the resource directory. A name that does not load leaves
    /// the image shown before.
    void setNormalImage(const QByteArray &iName) { setImage(normal, QString::fromUtf8(iName)); }
    QByteArray getNormalImage() const { return mImageNames[normal].toUtf8(); }
    void setCueingImage(const QByteArray &iName) { setImage(cueing, QString::fromUtf8(iName)); }
    QByteArray getCueingImage() const { return mImageNames[cueing].toUtf8(); }
    void setPlayingImage(const QByteArray &iName) { setImage(playing, QString::fromUtf8(iName)); }
    QByteArray getPlayingImage() const { return mImageNames[playing].toUtf8(); }
    void setDisabledImage(const QByteArray &iName) { setImage(disabled, QString::fromUtf8(iName)); }
    QByteArray getDisabledImage() const { return mImageNames[disabled].toUtf8(); }
    /// Mirrors the images left-to-right.
    void setImageReversed(bool iReversed);
    bool getImageReversed() const { return mImageReversed; }

    visualState getVisualState() const { return mVisualState; }

    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;

    QSize sizeHint() const override;

protected:
    void mousePressEvent(QMouseEvent *iEvent) override;
    void paintEvent(QPaintEvent *iEvent) override;

private:
    void setImage(visualState iState, const QString &iName);
    void handleMsgPlayStateDefault();
    void handleMsgEnabledStateDefault();
    // On connection: the look both models describe together, disabled before any play state.
    void showModelState();
    void setVisualState(visualState iState);

    static constexpr int cNumberOfImages = 4;

    Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> mPlayStateListener;
    Bnd_ConnectionToModel<Bndt_SimpleValue<bool>> mEnabledStateListener;
    QByteArray mPlayStateConnSpec;
    QByteArray mEnabledStateConnSpec;
    Kiv_Script mScript;
    visualState mVisualState = normal;
    QString mImageNames[cNumberOfImages];
    QPixmap mImages[cNumberOfImages];
    bool mImageReversed = false;
};
