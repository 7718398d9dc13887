#pragma once

#include "Bnd_ModelBase.h"
#include "Bndt_SimpleValue_API.h"
#include "Bndt_Type.h"
#include "Kib_Assert.h"

/// A model that holds one value of type T.
///
/// A host publishes one in two lines:
///
///     Bnde_SimpleValue<QString> title(QStringLiteral("Project.Title"),
///     QStringLiteral("Untitled")); title.Publish();
///
/// Listeners read it with MsgGet or MsgGetVariant and write it with MsgSet or MsgSetVariant;
/// every set message notifies MsgValueChanged. While the model is read-only a set answers
/// status 3 (Bnd_Status::ReadOnly) and changes nothing; the host's own setValue() still works
/// and notifies only when the value really changes.
template<class T, class TBndt_Type = Bndt_SimpleValue<T>>
class Bnde_SimpleValue : public Bnd_ModelBase
{
public:
    typedef T value_type;
    typedef Bndt_SimpleValue_API<T> API;

    explicit Bnde_SimpleValue(const QString &iName = QString(), const T &iValue = T())
        : Bnd_ModelBase(TBndt_Type::type())
        , mValue(iValue)
    {
        SetConnectionName(iName);
    }

    const T &getValue() const { return mValue; }
    /// Stores the value; listeners hear of it only when it differs from the old one.
    /// Answers whether it changed.
    bool setValue(const T &iValue)
    {
        if (Bnd_ValueTraits::equals(mValue, iValue))
            return false;
        mValue = iValue;
        notifyValueChanged();
        return true;
    }
    /// Stores the value without telling anyone: for cursor-like models that a painter moves
    /// many times a second (a list's current-row model), whose listeners read on demand.
    void setValueQuietly(const T &iValue) { mValue = iValue; }
    void notifyValueChanged()
    {
        SendToListeners(Bndt_SimpleValue_Notifications::MsgValueChanged());
    }

    QString describeValue() const override { return Bnd_ValueTraits::toDisplayString(mValue); }

protected:
    void handleMessage(const Bnd_MessageInterface &iMsg) override
    {
        if (iMsg.getApi() != Bnd_Api::SimpleValue) {
            Bnd_ModelBase::handleMessage(iMsg);
            return;
        }
        if (const auto *get = iMsg.as<typename API::MsgGet>()) {
            if (get->value)
                *get->value = mValue;
        } else if (const auto *set = iMsg.as<typename API::MsgSet>()) {
            takeValue(iMsg, set->value);
        } else if (const auto *getVariant = iMsg.as<Bndt_SimpleValue_BaseAPI::MsgGetVariant>()) {
            if (getVariant->value)
                *getVariant->value = Bnd_Variant(mValue);
        } else if (const auto *setVariant = iMsg.as<Bndt_SimpleValue_BaseAPI::MsgSetVariant>()) {
            handleMsgSetVariant(*setVariant);
        } else if (const auto *ro = iMsg.as<Bndt_SimpleValue_BaseAPI::MsgIsReadOnly>()) {
            if (ro->readOnly)
                *ro->readOnly = IsReadOnly();
        } else {
            iMsg.setStatus(iMsg.valueType() ? Bnd_Status::WrongType : Bnd_Status::NotHandled);
        }
    }

private:
    void handleMsgSetVariant(const Bndt_SimpleValue_BaseAPI::MsgSetVariant &iMsg)
    {
        T value;
        try {
            value = bnd_variant_cast<T>(iMsg.value);
        } catch (const bad_Bnd_Variant_cast &) {
            Kib_Assert::handleFailedAssert(
                "0 && \"Bnde_SimpleValue<T,TBndt_Type>::handleMsgSetVariant - Value for variant "
                "set "
                "operation is of wrong type!\"",
                "coresw/UIF/Bnd/Bnde_SimpleValue", 271);
            iMsg.setStatus(Bnd_Status::WrongType);
            return;
        }
        takeValue(iMsg, value);
    }

    void takeValue(const Bnd_MessageInterface &iMsg, const T &iValue)
    {
        if (IsReadOnly()) {
            iMsg.setStatus(Bnd_Status::ReadOnly);
            return;
        }
        mValue = iValue;
        notifyValueChanged(); // last: a listener may destroy this model
    }

    T mValue;
};

/// A row index model: a long where -1 means "no row".
template<class T> using Bnde_Index = Bnde_SimpleValue<T, Bndt_Index<T>>;
