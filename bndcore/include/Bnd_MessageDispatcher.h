#pragma once

#include "Bnd_MessageInterface.h"
#include "Bndt_Array_API.h"

#include <boost/function.hpp>

#include <vector>

/// Routes one message type to a member function of a handler object.
template<class TMsg> struct Bnd_SimpleDispatcherHelper
{
    template<class TWidget>
    static boost::function<bool(const Bnd_MessageInterface &)>
    make(TWidget *iWidget, void (TWidget::*iHandler)(const TMsg &))
    {
        return [iWidget, iHandler](const Bnd_MessageInterface &iMsg) {
            const TMsg *m = iMsg.as<TMsg>();
            if (!m)
                return false;
            (iWidget->*iHandler)(*m);
            return true;
        };
    }
};

/// Routes an element message (carried by Bndt_Array_API::MsgWithIndex) to a member function
/// taking the index and the inner message.
template<class TMsg> struct Bnd_DispatcherHelperWithIndex
{
    template<class TWidget>
    static boost::function<bool(const Bnd_MessageInterface &)>
    make(TWidget *iWidget, void (TWidget::*iHandler)(long, const TMsg &))
    {
        return [iWidget, iHandler](const Bnd_MessageInterface &iMsg) {
            const auto *indexed = iMsg.as<Bndt_Array_API::MsgWithIndex>();
            const TMsg *m = indexed ? indexed->inner.template as<TMsg>() : nullptr;
            if (!m)
                return false;
            (iWidget->*iHandler)(indexed->index, *m);
            iMsg.setStatus(m->status());
            return true;
        };
    }
};

/// The routes of a dispatcher: each takes the messages of one type and answers whether it did.
class Bnd_DispatchTable
{
public:
    typedef boost::function<bool(const Bnd_MessageInterface &)> Route;

    /// Hands the message to its route; answers whether one took it. A message without a route
    /// answers Bnd_Status::NotHandled.
    bool dispatch(const Bnd_MessageInterface &iMsg) const
    {
        for (const Route &route : mRoutes)
            if (route(iMsg))
                return true;
        iMsg.setStatus(Bnd_Status::NotHandled);
        return false;
    }

    /// A receive callback for a model. The table must outlive the model (keep both in the
    /// widget, the table first).
    boost::function<void(const Bnd_MessageInterface &)> callback() const
    {
        return [this](const Bnd_MessageInterface &iMsg) {
            dispatch(iMsg);
        };
    }

protected:
    void addRoute(Route iRoute) { mRoutes.push_back(std::move(iRoute)); }

private:
    std::vector<Route> mRoutes;
};

/// The table that routes the messages of an API to member functions of a widget:
///
///     typedef Bndt_SimpleValue_API<QString> API;
///     mDispatcher.add<API::MsgGet>(&Kiv_LineEdit::handleModelTextGet)
///                .add<API::MsgSet>(&Kiv_LineEdit::handleModelTextSet);
///     model->setReceiveMessageCB(mDispatcher.callback());
template<class TAPI, class TWidget> class Bnd_SimpleMessageDispatcher : public Bnd_DispatchTable
{
public:
    explicit Bnd_SimpleMessageDispatcher(TWidget *iWidget)
        : mWidget(iWidget)
    { }

    template<class TMsg> Bnd_SimpleMessageDispatcher &add(void (TWidget::*iHandler)(const TMsg &))
    {
        addRoute(Bnd_SimpleDispatcherHelper<TMsg>::make(mWidget, iHandler));
        return *this;
    }

private:
    TWidget *mWidget;
};

/// The indexed counterpart of Bnd_SimpleMessageDispatcher, for widgets that publish arrays or
/// containers. Plain messages can be routed too (add).
template<class TWidget> class Bnd_ContainerMessageDispatcher : public Bnd_DispatchTable
{
public:
    explicit Bnd_ContainerMessageDispatcher(TWidget *iWidget)
        : mWidget(iWidget)
    { }

    template<class TMsg>
    Bnd_ContainerMessageDispatcher &addWithIndex(void (TWidget::*iHandler)(long, const TMsg &))
    {
        addRoute(Bnd_DispatcherHelperWithIndex<TMsg>::make(mWidget, iHandler));
        return *this;
    }
    template<class TMsg>
    Bnd_ContainerMessageDispatcher &add(void (TWidget::*iHandler)(const TMsg &))
    {
        addRoute(Bnd_SimpleDispatcherHelper<TMsg>::make(mWidget, iHandler));
        return *this;
    }

private:
    TWidget *mWidget;
};
