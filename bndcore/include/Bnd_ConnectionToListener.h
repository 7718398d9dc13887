#pragma once

#include "Bnd_ConnectionDict.h"
#include "Bnd_ModelBase.h"
#include "Bndt_SimpleValue_API.h"

/// A model that a widget publishes: the data lives in the widget, which answers the messages
/// through the receive callback (setReceiveMessageCB, or a Bnd_SimpleMessageDispatcher).
///
///     Bnd_ConnectionToListener<Bndt_SimpleValue<QString>> model(name);   // published at once
///     model.setReceiveMessageCB(dispatcher.callback());
template<class TBndt_Type> class Bnd_ConnectionToListener : public Bnd_ModelBase
{
public:
    explicit Bnd_ConnectionToListener(const QString &iName,
                                      Bnd_ConnectionDict *iDict = &Bnd_ConnectionDict::Singleton())
        : Bnd_ModelBase(TBndt_Type::type())
    {
        SetConnectionName(iName);
        Publish(iDict);
    }

    /// Tells the listeners that the value changed.
    void notifyValueChanged()
    {
        SendToListeners(Bndt_SimpleValue_Notifications::MsgValueChanged());
    }
};
