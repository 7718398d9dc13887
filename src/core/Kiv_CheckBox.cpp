#include "Kiv_CheckBox.h"

#include "Kiv_WhatsThis.h"

#include <QScopedValueRollback>
#include <QStyle>
#include <QStyleOptionButton>

Kiv_CheckBox::Kiv_CheckBox(QWidget *iParent, const char *iName)
    : QCheckBox(iParent)
    , mVisible(this, "Kiv_CheckBox::setVisibleStateConnectionSpec",
               Kiv_DisplayBinding<bool>::ListenOnly, true)
    , mEnabled(this, "Kiv_CheckBox::setEnabledStateConnectionSpec",
               Kiv_DisplayBinding<bool>::ListenOnly, true)
    , mChecked(this, "Kiv_CheckBox::setCheckedStateConnectionSpec",
               Kiv_DisplayBinding<bool>::ListenOnly, false)
    , mFont(this)
{
    setObjectName(QString::fromUtf8(iName));
    Kiv_WhatsThis::setBestWhatsThisName(this, QStringLiteral("Kiv_CheckBox"));
    mVisible.onChanged([this] { updateAppearance(); });
    mEnabled.onChanged([this] { updateAppearance(); });
    mChecked.onChanged([this] { updateAppearance(); });
    connect(this, &QCheckBox::toggled, this, &Kiv_CheckBox::userChangedCheckedState);
    setEnabled(false); // no checked model yet
}

Kiv_CheckBox::~Kiv_CheckBox()
{
    disconnect(this, &QCheckBox::toggled, this, &Kiv_CheckBox::userChangedCheckedState);
}

void Kiv_CheckBox::setVisibleStateConnectionSpec(const QByteArray &iConnection)
{
    mVisible.setConnectionString(iConnection);
}

void Kiv_CheckBox::setEnabledStateConnectionSpec(const QByteArray &iConnection)
{
    mEnabled.setConnectionString(iConnection);
}

void Kiv_CheckBox::setCheckedStateConnectionSpec(const QByteArray &iConnection)
{
    mChecked.setConnectionString(iConnection);
}

void Kiv_CheckBox::setFontConnectionSpec(const QByteArray &iConnection)
{
    mFont.setConnectionString(iConnection);
}

void Kiv_CheckBox::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mVisible.connect(iEnv);
    mEnabled.connect(iEnv);
    // Bound or not, the checked state decides below whether the box can be used at all.
    mChecked.connect(iEnv);
    mFont.connect(iEnv);
}

Kiv_PointOfInterest Kiv_CheckBox::findPoi(const QString &iName)
{
    if (!iName.isEmpty() && iName != objectName())
        return Kiv_PointOfInterest();
    QStyleOptionButton option;
    initStyleOption(&option);
    const QRect mark = style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, this);
    return Kiv_PointOfInterest(this, mark.center());
}

void Kiv_CheckBox::updateAppearance()
{
    // Only a visible model shows or hides the box: without one, the host's show() and hide()
    // stand (a box its model hid is shown again when the model goes away).
    if (mVisible.isConnected()) {
        const bool visible = mVisible.value();
        mHiddenByModel = !visible;
        setVisible(visible);
    } else if (mHiddenByModel) {
        mHiddenByModel = false;
        setVisible(true);
    }
    const bool checked = mChecked.value(); // false without a model
    showChecked(checked);
    const bool enabled = mEnabled.value(); // true without a model
    setEnabled(enabled && mChecked.isConnected());
}

void Kiv_CheckBox::userChangedCheckedState(bool iChecked)
{
    if (mShowingModelState || !mChecked.isConnected())
        return;
    if (mChecked.send(iChecked) == Bnd_Status::ReadOnly)
        showChecked(!iChecked);
}

void Kiv_CheckBox::showChecked(bool iChecked)
{
    const QScopedValueRollback<bool> guard(mShowingModelState, true);
    setChecked(iChecked);
}
