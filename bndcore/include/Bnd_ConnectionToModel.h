#pragma once

#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ListenerBase.h"
#include "Bndt_Action_API.h"
#include "Bndt_Array_API.h"
#include "Bndt_SimpleValue_API.h"
#include "Bndt_Type.h"

/// A typed listener: it connects only to models of its type and offers typed access.
///
///     Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> title(QStringLiteral("Project.Title"));
///     title.setReceiveMessageCB([&](const Bnd_MessageInterface &m) { refresh(); });
///     QString t = title.getValue();             // or readValue(t), which tells success
///     title.setValue(QStringLiteral("New title"));
template<class TBndt_Type> class Bnd_ConnectionToModel;

namespace Bnd_ConnectionDetail {
/// Constructor arguments shared by all typed listeners.
template<class TBndt_Type> class TypedListener : public Bnd_ListenerBase
{
public:
    explicit TypedListener(const QString &iName = QString(),
                           const Bnd_ConnectionEnvironmentPtr &iEnv
                           = Bnd_ConnectionEnvironmentPtr())
        : Bnd_ListenerBase(iName, iEnv, TBndt_Type::type())
    { }
};
} // namespace Bnd_ConnectionDetail

/// A listener of one value of type T.
template<class T>
class Bnd_ConnectionToModel<Bndt_SimpleValue<T>>
    : public Bnd_ConnectionDetail::TypedListener<Bndt_SimpleValue<T>>
{
public:
    typedef Bndt_SimpleValue_API<T> API;
    using Bnd_ConnectionDetail::TypedListener<Bndt_SimpleValue<T>>::TypedListener;

    /// Reads the value; answers false (leaving `oValue` alone) when not connected.
    bool readValue(T &oValue) const
    {
        return this->SendMessageToModel(typename API::MsgGet(&oValue));
    }
    /// The value, or `iDefault` when not connected.
    T getValue(const T &iDefault = T()) const
    {
        T value = iDefault;
        return readValue(value) ? value : iDefault;
    }
    /// Writes the value and answers the status (Bnd_Status::Ok, ReadOnly, NotConnected...).
    int setValue(const T &iValue, bool iEchoToSender = true) const
    {
        typename API::MsgSet msg(iValue);
        this->SendMessageToModel(msg, iEchoToSender);
        return msg.status();
    }
    bool isReadOnly() const
    {
        bool readOnly = false;
        this->SendMessageToModel(Bndt_SimpleValue_BaseAPI::MsgIsReadOnly(&readOnly));
        return readOnly;
    }
};

/// A listener of a row index (a long).
template<class T>
class Bnd_ConnectionToModel<Bndt_Index<T>> : public Bnd_ConnectionToModel<Bndt_SimpleValue<T>>
{
public:
    using Bnd_ConnectionToModel<Bndt_SimpleValue<T>>::Bnd_ConnectionToModel;
};

/// A listener of a command.
template<class Signature>
class Bnd_ConnectionToModel<Bndt_Action<Signature>>
    : public Bnd_ConnectionDetail::TypedListener<Bndt_Action<Signature>>
{
public:
    using Bnd_ConnectionDetail::TypedListener<Bndt_Action<Signature>>::TypedListener;

    /// Whether the command can run now (false when not connected).
    bool isEnabled() const
    {
        bool enabled = false;
        return this->SendMessageToModel(Bndt_Action_API::MsgIsEnabled(&enabled)) && enabled;
    }
    /// Performs the command; answers whether the model did.
    bool invoke(const Bnd_ArgList &iArguments = Bnd_ArgList(), Bnd_Variant *oResult = nullptr) const
    {
        Bnd_Variant result;
        return this->SendMessageToModel(
            Bndt_Action_API::MsgAction(oResult ? oResult : &result, iArguments));
    }
};

/// A listener of an array of values of type T.
template<class T>
class Bnd_ConnectionToModel<Bndt_Array<T>>
    : public Bnd_ConnectionDetail::TypedListener<Bndt_Array<T>>
{
public:
    typedef Bndt_SimpleValue_API<T> API;
    using Bnd_ConnectionDetail::TypedListener<Bndt_Array<T>>::TypedListener;

    /// The number of elements, 0 when not connected.
    long size() const
    {
        long n = 0;
        return this->SendMessageToModel(Bndt_Array_API::MsgGetSize(&n)) ? n : 0;
    }
    bool getAt(long i, T &oValue) const
    {
        typename API::MsgGet get(&oValue);
        return this->SendMessageToModel(Bndt_Array_API::MsgWithIndex(i, get));
    }
    T at(long i, const T &iDefault = T()) const
    {
        T value = iDefault;
        return getAt(i, value) ? value : iDefault;
    }
    int setAt(long i, const T &iValue) const
    {
        typename API::MsgSet set(iValue);
        Bndt_Array_API::MsgWithIndex msg(i, set);
        this->SendMessageToModel(msg);
        return msg.status();
    }
    bool moveElement(long iFrom, long iTo) const
    {
        return this->SendMessageToModel(Bndt_Array_API::MsgMoveElement(iFrom, iTo));
    }
};

/// A listener of an array of commands.
template<class Signature>
class Bnd_ConnectionToModel<Bndt_Array<Bndt_Action<Signature>>>
    : public Bnd_ConnectionDetail::TypedListener<Bndt_Array<Bndt_Action<Signature>>>
{
public:
    using Bnd_ConnectionDetail::TypedListener<Bndt_Array<Bndt_Action<Signature>>>::TypedListener;

    long size() const
    {
        long n = 0;
        return this->SendMessageToModel(Bndt_Array_API::MsgGetSize(&n)) ? n : 0;
    }
    bool isEnabledAt(long i) const
    {
        bool enabled = false;
        Bndt_Action_API::MsgIsEnabled inner(&enabled);
        return this->SendMessageToModel(Bndt_Array_API::MsgWithIndex(i, inner)) && enabled;
    }
    bool invokeAt(long i, const Bnd_ArgList &iArguments = Bnd_ArgList(),
                  Bnd_Variant *oResult = nullptr) const
    {
        Bnd_Variant result;
        Bndt_Action_API::MsgAction inner(oResult ? oResult : &result, iArguments);
        return this->SendMessageToModel(Bndt_Array_API::MsgWithIndex(i, inner));
    }
};

/// A listener of a container (its size is the number of rows it describes).
template<>
class Bnd_ConnectionToModel<Bndt_ArrayContainer>
    : public Bnd_ConnectionDetail::TypedListener<Bndt_ArrayContainer>
{
public:
    using Bnd_ConnectionDetail::TypedListener<Bndt_ArrayContainer>::TypedListener;

    long size() const
    {
        long n = 0;
        return SendMessageToModel(Bndt_Array_API::MsgGetSize(&n)) ? n : 0;
    }
};
