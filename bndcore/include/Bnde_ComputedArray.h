#pragma once

#include "Bnd_ModelBase.h"
#include "Bndt_Array_API.h"
#include "Bndt_SimpleValue_API.h"
#include "Bndt_Type.h"

#include <boost/function.hpp>

/// An array whose elements are computed when asked for: generated rows, another container's
/// data seen through a function, a sorted order over a host's own storage. Nothing is stored,
/// so an array of ten million elements costs what its functions cost.
///
///     Bnde_ComputedArray<QString> names(QStringLiteral("Bin.name"),
///                                       [&] { return long(clips.size()); },
///                                       [&](long i) { return clips[order[i]].name; });
///     names.Publish();
///     ...
///     names.notifyReplaced(0, oldSize, long(clips.size())); // after the host's data changed
///
/// Listeners read it like a Bnde_Array (size, elements, subscripts); it refuses sets and moves
/// (Bnd_Status::ReadOnly): the host changes its data and tells the listeners.
template<class T> class Bnde_ComputedArray : public Bnd_ModelBase
{
public:
    typedef boost::function<long()> SizeFunction;
    typedef boost::function<T(long)> ElementFunction;
    typedef Bndt_SimpleValue_API<T> API;

    Bnde_ComputedArray(const QString &iName, const SizeFunction &iSize,
                       const ElementFunction &iElement)
        : Bnd_ModelBase(Bndt_Array<T>::type())
        , mSize(iSize)
        , mElement(iElement)
    {
        SetConnectionName(iName);
        SetReadOnly(true);
    }

    long size() const { return mSize ? mSize() : 0; }
    /// Element i; the element function is only called for 0 <= i < size().
    T at(long i) const { return mElement(i); }

    /// Tells the listeners that elements [first, end) of the old contents are now `iCount`
    /// new ones (the size is asked of the size function).
    void notifyReplaced(long iFirst, long iEnd, long iCount)
    {
        SendToListeners(
            Bndt_Array_Notifications::MsgElementsReplaced(iFirst, iEnd, iCount, size()));
    }

    QString describeValue() const override
    {
        return QStringLiteral("<%1 computed elements>").arg(size());
    }

protected:
    void handleMessage(const Bnd_MessageInterface &iMsg) override
    {
        if (const auto *getSize = iMsg.as<Bndt_Array_API::MsgGetSize>()) {
            if (getSize->size)
                *getSize->size = size();
            return;
        }
        const auto *indexed = iMsg.as<Bndt_Array_API::MsgWithIndex>();
        if (!indexed) {
            if (iMsg.is<Bndt_Array_API::MsgMoveElement>())
                iMsg.setStatus(Bnd_Status::ReadOnly);
            else
                Bnd_ModelBase::handleMessage(iMsg);
            return;
        }
        const Bnd_MessageInterface &inner = indexed->inner;
        if (const auto *ro = inner.as<Bndt_SimpleValue_BaseAPI::MsgIsReadOnly>()) {
            if (ro->readOnly)
                *ro->readOnly = true;
        } else if (indexed->index < 0 || indexed->index >= size()) {
            iMsg.setStatus(Bnd_Status::OutOfRange);
        } else if (const auto *get = inner.as<typename API::MsgGet>()) {
            if (get->value)
                *get->value = at(indexed->index);
        } else if (const auto *variant = inner.as<Bndt_SimpleValue_BaseAPI::MsgGetVariant>()) {
            if (variant->value)
                *variant->value = Bnd_Variant(at(indexed->index));
        } else if (inner.is<typename API::MsgSet>()
                   || inner.is<Bndt_SimpleValue_BaseAPI::MsgSetVariant>()) {
            iMsg.setStatus(Bnd_Status::ReadOnly);
        } else {
            iMsg.setStatus(inner.valueType() ? Bnd_Status::WrongType : Bnd_Status::NotHandled);
        }
        inner.setStatus(iMsg.status());
    }

private:
    SizeFunction mSize;
    ElementFunction mElement;
};
