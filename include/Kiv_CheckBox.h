#pragma once

#include "Kiv_DisplayBinding.h"
#include "Kiv_FontConnection.h"
#include "Kiv_PointOfInterest.h"
#include "Kiv_WidgetConnectInterface.h"
#include "kivcore_export.h"

#include <QByteArray>
#include <QCheckBox>

/// A check box whose visibility, enabled state and checked state follow three bool models.
///
/// Without a model, the box is unchecked and its visibility is the host's (show(), hide()); it
/// is enabled only while its checked state is bound to a model and the enabled model (if any)
/// says so, so a box that cannot send its state is never clickable. A click sends the new state to
/// the checked model; a model that refuses it as read-only gets the box put back, without another
/// message. The three states are only read from models ("publish" is refused). The font connection
/// is that of Kiv_FontConnection.
class KIVCORE_EXPORT Kiv_CheckBox : public QCheckBox, public Kiv_WidgetConnectInterface
{
    Q_OBJECT
    Q_PROPERTY(QByteArray visibleStateConnectionSpec READ visibleStateConnectionSpec WRITE
                   setVisibleStateConnectionSpec)
    Q_PROPERTY(QByteArray enabledStateConnectionSpec READ enabledStateConnectionSpec WRITE
                   setEnabledStateConnectionSpec)
    Q_PROPERTY(QByteArray checkedStateConnectionSpec READ checkedStateConnectionSpec WRITE
                   setCheckedStateConnectionSpec)
    Q_PROPERTY(QByteArray fontConnectionSpec READ fontConnectionSpec WRITE setFontConnectionSpec)

public:
    explicit Kiv_CheckBox(QWidget *iParent = nullptr, const char *iName = nullptr);
    ~Kiv_CheckBox() override;

    void setVisibleStateConnectionSpec(const QByteArray &iConnection);
    QByteArray visibleStateConnectionSpec() const { return mVisible.connectionString(); }
    void setEnabledStateConnectionSpec(const QByteArray &iConnection);
    QByteArray enabledStateConnectionSpec() const { return mEnabled.connectionString(); }
    void setCheckedStateConnectionSpec(const QByteArray &iConnection);
    QByteArray checkedStateConnectionSpec() const { return mChecked.connectionString(); }
    void setFontConnectionSpec(const QByteArray &iConnection);
    QByteArray fontConnectionSpec() const { return mFont.connectionString(); }

    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;

    /// The centre of the box's check mark, for the box's object name (or an empty name); an
    /// empty point of interest for any other name.
    Kiv_PointOfInterest findPoi(const QString &iName);

private:
    void updateAppearance();
    void userChangedCheckedState(bool iChecked);
    void showChecked(bool iChecked);

    Kiv_DisplayBinding<bool> mVisible;
    Kiv_DisplayBinding<bool> mEnabled;
    Kiv_DisplayBinding<bool> mChecked;
    Kiv_FontConnection mFont;
    /// Raised while the box shows a state it did not get from the user.
    bool mShowingModelState = false;
    /// The visible model hid the box.
    bool mHiddenByModel = false;
};
