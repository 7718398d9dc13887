#pragma once

#include "Bnd_ConnectionToModel.h"
#include "Kiv_ViewBase.h"
#include "kivcore_export.h"

#include <memory>

/// A view that can be selected. The selected state lives in the view itself, or, once an
/// is-selected connection name is given, in the bool model of that name:
///
/// - no connection name: isSelected() and setSelected() use the view's own flag;
/// - a name whose model is connected: they read and write the model;
/// - a name whose model cannot be reached: isSelected() is false and setSelected() does
///   nothing (the view's own flag is left alone).
///
/// The view asks to be redrawn when its selected state changes, whichever way.
class KIVCORE_EXPORT Kiv_SelectableView : public Kiv_ViewBase
{
public:
    typedef Bnd_ConnectionToModel<Bndt_SimpleValue<bool>> BoolListener;

    Kiv_SelectableView();
    ~Kiv_SelectableView() override;

    /// Binds the is-selected listener (or unbinds it when there is no name), then the base
    /// view's tool tip.
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;

    /// The name of the bool model that holds the selected state; bound by makeConnections().
    /// An empty name goes back to the view's own flag.
    virtual void setIsSelectedConnectionSpec(const QString &iName);
    virtual bool isSelected() const;
    virtual void setSelected(bool iSelected);

    const QString &isSelectedConnectionSpec() const { return mIsSelectedName; }

protected:
    /// A copy has the source's connection name and flag and a listener of its own.
    Kiv_SelectableView(const Kiv_SelectableView &iOther);

    /// Makes the is-selected listener; called by the constructors.
    virtual void Init();

private:
    void receive(const Bnd_MessageInterface &iMsg);

    std::unique_ptr<BoolListener> mIsSelectedListenerP;
    QString mIsSelectedName;
    bool mSelected = false;
};
