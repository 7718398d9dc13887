#pragma once

#include "Bnd_ModelBase.h"
#include "Bndt_Action_API.h"
#include "Bndt_Type.h"
#include "bndcore_export.h"

#include <boost/function.hpp>

/// A model that stands for a command.
///
/// It answers MsgIsEnabled from its enabled callback when one is set, else from its enabled
/// default, and performs MsgAction through convertMessageAndDoAction(). Changing the enabled
/// default (or calling notifyEnabledChanged() when the callback's answer changes) tells the
/// listeners with Bndt_Action_Notifications::MsgEnabledChanged.
class BNDCORE_EXPORT Bnde_ActionModel : public Bnd_ModelBase
{
public:
    explicit Bnde_ActionModel(const QString &iName = QString(), bool iEnabled = true);
    ~Bnde_ActionModel() override;

    bool isEnabled() const;
    /// Sets the enabled default; listeners hear of a change.
    void setIsEnabledDefault(bool iEnabled);
    bool isEnabledDefault() const { return mEnabledDefault; }
    /// Makes the enabled state computed by the callback (an empty function removes it).
    void setIsEnabledCB(const boost::function<bool()> &iCallback);
    void notifyEnabledChanged();

    /// How many times the action was performed (for listings and tests of hosts).
    long performedCount() const { return mPerformed; }

protected:
    void handleMessage(const Bnd_MessageInterface &iMsg) override;
    /// Performs the action of a MsgAction. The default answers Bnd_Status::NotHandled; the
    /// typed variants below convert the argument list and call their function.
    virtual void convertMessageAndDoAction(const Bnd_MessageInterface &iMsg);

private:
    boost::function<bool()> mEnabledCB;
    long mPerformed = 0;
    bool mEnabledDefault;
};

namespace Bnd_ActionDetail {

BNDCORE_EXPORT void reportArgumentMismatch(const QString &iModelName, int iExpected, int iGiven);

template<class Signature> struct Invoker;

template<class R> struct Invoker<R()>
{
    template<class F>
    static int call(const F &f, const Bnd_ArgList &iArgs, Bnd_Variant *oResult,
                    const QString &iName)
    {
        if (!iArgs.empty()) {
            reportArgumentMismatch(iName, 0, int(iArgs.size()));
            return Bnd_Status::WrongType;
        }
        store(f, oResult);
        return Bnd_Status::Ok;
    }
    template<class F> static void store(const F &f, Bnd_Variant *oResult)
    {
        if constexpr (std::is_void<R>::value) {
            f();
            (void)oResult;
        } else {
            R r = f();
            if (oResult)
                *oResult = Bnd_Variant(std::move(r));
        }
    }
};

template<class R, class A> struct Invoker<R(A)>
{
    typedef std::decay_t<A> Arg;
    template<class F>
    static int call(const F &f, const Bnd_ArgList &iArgs, Bnd_Variant *oResult,
                    const QString &iName)
    {
        const Arg *arg = iArgs.size() == 1 ? iArgs.front().get<Arg>() : nullptr;
        if (!arg) {
            reportArgumentMismatch(iName, 1, int(iArgs.size()));
            return Bnd_Status::WrongType;
        }
        if constexpr (std::is_void<R>::value) {
            f(*arg);
        } else {
            R r = f(*arg);
            if (oResult)
                *oResult = Bnd_Variant(std::move(r));
        }
        return Bnd_Status::Ok;
    }
};

} // namespace Bnd_ActionDetail

template<class TBndt_Action> class Bnde_ActionModelWithType;

/// An action of a given signature (no argument or one argument; any result) that calls a
/// function. An argument list that does not fit the signature answers Bnd_Status::WrongType.
///
///     Bnde_ActionModelWithType<Bndt_Action<void()>> play("Transport.play", [&] { start(); });
///     play.Publish();
template<class Signature>
class Bnde_ActionModelWithType<Bndt_Action<Signature>> : public Bnde_ActionModel
{
public:
    typedef boost::function<Signature> Function;

    explicit Bnde_ActionModelWithType(const QString &iName = QString(),
                                      const Function &iFunction = Function(), bool iEnabled = true)
        : Bnde_ActionModel(iName, iEnabled)
        , mFunction(iFunction)
    { }
    void setFunction(const Function &iFunction) { mFunction = iFunction; }

protected:
    void convertMessageAndDoAction(const Bnd_MessageInterface &iMsg) override
    {
        const auto *action = iMsg.as<Bndt_Action_API::MsgAction>();
        if (!action || mFunction.empty()) {
            Bnde_ActionModel::convertMessageAndDoAction(iMsg);
            return;
        }
        // Copy the function: the action may destroy this model.
        const Function f = mFunction;
        iMsg.setStatus(Bnd_ActionDetail::Invoker<Signature>::call(
            f, action->arguments, action->result, GetConnectionName()));
    }

private:
    Function mFunction;
};

/// An action that calls a member function of an object.
///
///     Bnde_ActionModelPtmf<void(bool), Player> loop("Transport.loop", &player, &Player::setLoop);
template<class Signature, class Class> class Bnde_ActionModelPtmf;

template<class R, class Class, class... Args>
class Bnde_ActionModelPtmf<R(Args...), Class>
    : public Bnde_ActionModelWithType<Bndt_Action<R(Args...)>>
{
public:
    typedef R (Class::*Method)(Args...);

    Bnde_ActionModelPtmf(const QString &iName, Class *iObject, Method iMethod, bool iEnabled = true)
        : Bnde_ActionModelWithType<Bndt_Action<R(Args...)>>(
            iName, [iObject, iMethod](Args... a) -> R { return (iObject->*iMethod)(a...); },
            iEnabled)
    { }
};
