#pragma once

#include "Kiv_DisplayBinding.h"
#include "Kiv_WidgetConnectInterface.h"
#include "kivcore_export.h"

#include <QByteArray>
#include <QLabel>

/// A label that shows one of two images as a bool model is true or false. The images are
/// named relative to the resource directory ("Images/Lock.png") and loaded through
/// Kib_Resource::loadPixmap; an empty name, or an image that cannot be loaded, shows nothing.
/// Without a model (unbound or not reached) no image is shown. A "publish" connection makes the
/// label hold the value.
class KIVCORE_EXPORT Kiv_BoolIcon : public QLabel, public Kiv_WidgetConnectInterface
{
    Q_OBJECT
    Q_PROPERTY(QByteArray connectionSpec READ connectionSpec WRITE setConnectionSpec)

public:
    explicit Kiv_BoolIcon(QWidget *iParent = nullptr, const char *iName = nullptr);
    ~Kiv_BoolIcon() override;

    void setConnectionSpec(const QByteArray &iConnection);
    QByteArray connectionSpec() const { return mValue.connectionString(); }
    void setImageNames(const QByteArray &iTrueImage, const QByteArray &iFalseImage);
    QByteArray trueImageName() const { return mTrueImage; }
    QByteArray falseImageName() const { return mFalseImage; }

    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;

private:
    void refresh();

    Kiv_DisplayBinding<bool> mValue;
    QByteArray mTrueImage;
    QByteArray mFalseImage;
};
