#pragma once

#include "Bnd_ConnectionToModel.h"
#include "Kiv_AutoRepeat.h"
#include "Kiv_Script.h"
#include "Kiv_WidgetConnectInterface.h"
#include "kivcore_export.h"

#include <QByteArray>
#include <QPixmap>
#include <QString>
#include <QWidget>

#include <memory>

class Kiv_ContextMenuListener;

/// A transport button drawn from three images that runs its action script the moment it is
/// pressed (or, with the action delay on, when it is released over the button), and with
/// auto-repeat on again and again while it is held.
///
///     auto *stepBack = new Kiv_ImmediateActionButton(bar, "stepBack", "Transport.stepBack()",
///                                                    "Transport.canStep");
///     stepBack->setNormalImage("Images/Buttons/StepBackNormal.png");
///     stepBack->setTrackingImage("Images/Buttons/StepBackTracking.png");
///     stepBack->setDisabledImage("Images/Buttons/StepBackDisabled.png");
///     stepBack->setKorvexAutoRepeat(true);
///
/// Models drive the normal and disabled looks (a bool enabled-state model) and the visibility (a
/// bool visible-state model); the mouse drives the tracking look. Without an enabled-state
/// model the tracking image stays after the release. A context-menu model supplies the menu of
/// a right click.
class KIVCORE_EXPORT Kiv_ImmediateActionButton : public QWidget, public Kiv_WidgetConnectInterface
{
    Q_OBJECT
    Q_PROPERTY(QByteArray actionScript READ getActionScript WRITE setActionScript)
    Q_PROPERTY(
        QByteArray enabledStateConnSpec READ getEnabledStateConnSpec WRITE setEnabledStateConnSpec)
    Q_PROPERTY(QByteArray visibleStateConnectionSpec READ getVisibleStateConnectionSpec WRITE
                   setVisibleStateConnectionSpec)
    Q_PROPERTY(QByteArray contextMenuConnectionSpec READ getContextMenuConnectionSpec WRITE
                   setContextMenuConnectionSpec)
    Q_PROPERTY(QByteArray normalImage READ getNormalImage WRITE setNormalImage)
    Q_PROPERTY(QByteArray trackingImage READ getTrackingImage WRITE setTrackingImage)
    Q_PROPERTY(QByteArray disabledImage READ getDisabledImage WRITE setDisabledImage)
    Q_PROPERTY(bool imageReversed READ getImageReversed WRITE setImageReversed)
    Q_PROPERTY(bool actionDelay READ getActionDelay WRITE setActionDelay)
    Q_PROPERTY(bool korvexAutoRepeat READ getKorvexAutoRepeat WRITE setKorvexAutoRepeat)
    Q_PROPERTY(int repeatDelay READ getRepeatDelay WRITE setRepeatDelay)
    Q_PROPERTY(int repeatInterval READ getRepeatInterval WRITE setRepeatInterval)

public:
    enum visualState { normal = 0, tracking = 1, disabled = 2 };

    explicit Kiv_ImmediateActionButton(QWidget *iParentP = nullptr, const char *iName = nullptr,
                                       const QString &iActionScript = QString(),
                                       const QString &iEnabledStateConnSpec = QString());
    ~Kiv_ImmediateActionButton() override;

    void setActionScript(const QByteArray &iScript);
    QByteArray getActionScript() const { return mScript.text().toUtf8(); }

    /// The connection specs take effect in makeConnections(); a changed spec detaches its
    /// listener from the old model until then.
    void setEnabledStateConnSpec(const QByteArray &iSpec);
    QByteArray getEnabledStateConnSpec() const { return mEnabledStateConnSpec; }
    void setVisibleStateConnectionSpec(const QByteArray &iSpec);
    QByteArray getVisibleStateConnectionSpec() const { return mVisibleStateConnSpec; }
    void setContextMenuConnectionSpec(const QByteArray &iSpec);
    QByteArray getContextMenuConnectionSpec() const { return mContextMenuConnSpec; }
    /// Replaces the listener behind the context-menu spec (a null one restores the default,
    /// which binds to a model holding a QMenu pointer). The new listener is connected at the
    /// next makeConnections().
    void setContextMenuListener(std::unique_ptr<Kiv_ContextMenuListener> iListener);

    /// Image names are relative to the resource directory ("Images/Buttons/PlayNormal.png"). A
    /// name that does not load leaves the image shown before.
    void setNormalImage(const QByteArray &iName) { setImage(normal, QString::fromUtf8(iName)); }
    QByteArray getNormalImage() const { return mImageNames[normal]; }
    void setTrackingImage(const QByteArray &iName) { setImage(tracking, QString::fromUtf8(iName)); }
    QByteArray getTrackingImage() const { return mImageNames[tracking]; }
    void setDisabledImage(const QByteArray &iName) { setImage(disabled, QString::fromUtf8(iName)); }
    QByteArray getDisabledImage() const { return mImageNames[disabled]; }
    /// Mirrors the images left-to-right (a "rewind" button from "fast forward" images).
    void setImageReversed(bool iReversed);
    bool getImageReversed() const { return mImageReversed; }

    /// Off (the default): the script runs on the press. On: it runs on a release inside the
    /// button.
    void setActionDelay(bool iDelay) { mActionDelay = iDelay; }
    bool getActionDelay() const { return mActionDelay; }
    /// Turning auto-repeat off stops a repeat under way.
    void setKorvexAutoRepeat(bool iAutoRepeat);
    bool getKorvexAutoRepeat() const { return mAutoRepeat; }
    void setRepeatDelay(int iMs) { mRepeat.setDelay(iMs); }
    int getRepeatDelay() const { return mRepeat.delay(); }
    void setRepeatInterval(int iMs) { mRepeat.setInterval(iMs); }
    int getRepeatInterval() const { return mRepeat.interval(); }

    visualState getVisualState() const { return mVisualState; }

    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;

    QSize sizeHint() const override;

protected:
    void mousePressEvent(QMouseEvent *iEvent) override;
    void mouseReleaseEvent(QMouseEvent *iEvent) override;
    void leaveEvent(QEvent *iEvent) override;
    void contextMenuEvent(QContextMenuEvent *iEvent) override;
    void paintEvent(QPaintEvent *iEvent) override;

private:
    void handleMsgEnabledStateDefault();
    void handleMsgVisibleStateDefault();
    void setImage(visualState iState, const QString &iName);
    void repeatHandler();
    void setVisualState(visualState iState);
    bool isContextMenuPress(const QMouseEvent *iEvent) const;

    static constexpr int cNumberOfImages = 3;

    Bnd_ConnectionToModel<Bndt_SimpleValue<bool>> mEnabledStateListener;
    Bnd_ConnectionToModel<Bndt_SimpleValue<bool>> mVisibleStateListener;
    std::unique_ptr<Kiv_ContextMenuListener> mContextMenuListenerP;
    QByteArray mEnabledStateConnSpec;
    QByteArray mVisibleStateConnSpec;
    QByteArray mContextMenuConnSpec;
    Kiv_Script mScript;
    visualState mVisualState = normal;
    QByteArray mImageNames[cNumberOfImages];
    QPixmap mImages[cNumberOfImages];
    Kiv_AutoRepeat mRepeat;
    bool mActionDelay = false;
    bool mImageReversed = false;
    bool mAutoRepeat = false;
    bool mHiddenByModel = false;
};
