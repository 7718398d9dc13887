#pragma once

#include "Bnd_ListenerBase.h"
#include "Kiv_AutoRepeat.h"
#include "Kiv_Script.h"
#include "Kiv_WidgetConnectInterface.h"
#include "kivcore_export.h"

#include <QByteArray>
#include <QPushButton>
#include <QString>

class Bnd_MessageInterface;

/// A push button that runs an action script when clicked or when Return or Enter is pressed on
/// it, and, with auto-repeat on, again and again while it is held down.
///
///     auto *button = new Kiv_ActionButton(parent, "playButton", tr("Play"),
///                                         "Transport.play()", "Transport.canPlay");
///     button->SetKorvexAutoRepeat(true);     // repeat after 1000 ms, then every 500 ms
///     Kiv_ConnectionUtils::recursiveConnect(parent, env);
///
/// The button is enabled by the bool model named by the enabled-state spec; while no such model
/// is connected it takes its default enabled state.
class KIVCORE_EXPORT Kiv_ActionButton : public QPushButton, public Kiv_WidgetConnectInterface
{
    Q_OBJECT
    Q_PROPERTY(QByteArray actionScript READ GetActionScript WRITE SetActionScript)
    Q_PROPERTY(QByteArray enabledStateConnectionSpec READ getEnabledStateConnectionSpec WRITE
                   setEnabledStateConnectionSpec)
    Q_PROPERTY(bool korvexAutoRepeat READ GetKorvexAutoRepeat WRITE SetKorvexAutoRepeat)
    Q_PROPERTY(int repeatDelay READ GetRepeatDelay WRITE SetRepeatDelay)
    Q_PROPERTY(int repeatInterval READ GetRepeatInterval WRITE SetRepeatInterval)
    Q_PROPERTY(bool defaultEnabledState READ GetDefaultEnabledState WRITE SetDefaultEnabledState)

public:
    explicit Kiv_ActionButton(QWidget *iParentP = nullptr, const char *iName = nullptr,
                              const QString &iText = QString(),
                              const QString &iActionScript = QString(),
                              const QString &iEnabledStateConnectionSpec = QString(),
                              bool iDefaultEnabledState = true);
    ~Kiv_ActionButton() override;

    /// Parses the script; the same text again does nothing, a faulty one leaves no script. The
    /// script connects in makeConnections().
    void SetActionScript(const QByteArray &iScript);
    QByteArray GetActionScript() const { return mScript.text().toUtf8(); }

    /// Names the bool model that enables the button; it connects in makeConnections(). A new
    /// name detaches the listener from the old model until then.
    void setEnabledStateConnectionSpec(const QByteArray &iSpec);
    QByteArray getEnabledStateConnectionSpec() const
    {
        return mEnabledStateConnectionSpec.toUtf8();
    }

    /// Turning auto-repeat off stops a repeat under way.
    void SetKorvexAutoRepeat(bool iAutoRepeat);
    bool GetKorvexAutoRepeat() const { return mAutoRepeat; }
    /// Time from the press to the first repeat (ms); takes effect at the next press.
    void SetRepeatDelay(int iMs) { mRepeat.setDelay(iMs); }
    int GetRepeatDelay() const { return mRepeat.delay(); }
    /// Time between repeats (ms); a repeat under way takes it at once.
    void SetRepeatInterval(int iMs) { mRepeat.setInterval(iMs); }
    int GetRepeatInterval() const { return mRepeat.interval(); }

    /// The enabled state while no enabled-state model is connected.
    void SetDefaultEnabledState(bool iEnabled);
    bool GetDefaultEnabledState() const { return mDefaultEnabledState; }

    /// Connects the script with this button as its widget (a script that does not connect is
    /// dropped) and the enabled-state listener, when a spec is set, in `iEnv`.
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;

public slots:
    void slotClicked();
    void slotPressed();
    void slotReleased();

protected:
    /// Return and Enter click the button.
    void keyPressEvent(QKeyEvent *iEvent) override;
    /// Called after every click, once the script has run.
    virtual void afterClickAction();

private:
    void repeatHandler();
    void updateEnabledAppearance();
    void handleEnabledStateConnectedChanged();
    void handleEnabledStateValueChanged();
    void receiveEnabledState(const Bnd_MessageInterface &iMsg);

    QString mEnabledStateConnectionSpec;
    Bnd_ListenerBase mEnabledStateListener;
    Kiv_Script mScript;
    Kiv_AutoRepeat mRepeat;
    bool mAutoRepeat = false;
    bool mDefaultEnabledState;
};
