#pragma once

#include "Bnd_ModelBase.h"
#include "Bndt_Action_API.h"
#include "Bndt_Array_API.h"
#include "Bndt_SimpleValue_API.h"
#include "Bndt_Type.h"
#include "Kib_Assert.h"
#include "bndcore_export.h"

#include <boost/function.hpp>

#include <algorithm>
#include <vector>

namespace Bnd_ArrayDetail {
/// Normalises a replaced range against the size; answers false when it is not a valid range.
BNDCORE_EXPORT bool clampRange(long iSize, long &ioFirst, long &ioEnd);
BNDCORE_EXPORT void reportBadIndex(const char *iOperation, const QString &iName, long iIndex,
                                   long iSize);
} // namespace Bnd_ArrayDetail

/// An array of values of type T.
///
/// Listeners ask for the size (MsgGetSize), read and write elements through MsgWithIndex
/// carrying a simple-value message (typed or variant), and move elements (MsgMoveElement).
/// Every change is announced as MsgElementsReplaced or MsgElementsMoved. A name with a
/// subscript ("Clips.name[3]") gives a listener one element as if it were a simple value.
template<class T> class Bnde_Array : public Bnd_ModelBase
{
public:
    typedef T value_type;
    typedef Bndt_SimpleValue_API<T> API;

    explicit Bnde_Array(const QString &iName = QString(), std::vector<T> iValues = {})
        : Bnd_ModelBase(Bndt_Array<T>::type())
        , mValues(std::move(iValues))
    {
        SetConnectionName(iName);
    }

    long size() const { return long(mValues.size()); }
    /// Element i (a reference, except for arrays of bool, whose elements are packed bits).
    typename std::vector<T>::const_reference at(long i) const { return mValues[size_t(i)]; }
    const std::vector<T> &values() const { return mValues; }

    /// Replaces the whole content.
    void setValues(std::vector<T> iValues) { replace(0, size(), std::move(iValues)); }
    /// Sets one element; listeners hear of it only when it changed. Answers whether it did.
    bool set(long i, const T &iValue)
    {
        if (i < 0 || i >= size()) {
            Bnd_ArrayDetail::reportBadIndex("set", GetConnectionName(), i, size());
            return false;
        }
        const T &current = at(i);
        if (Bnd_ValueTraits::equals(current, iValue))
            return false;
        mValues[size_t(i)] = iValue;
        notifyReplaced(i, i + 1, 1);
        return true;
    }
    void insert(long i, const T &iValue) { replace(i, i, std::vector<T> { iValue }); }
    void append(const T &iValue) { insert(size(), iValue); }
    void remove(long i, long iCount = 1) { replace(i, i + iCount, {}); }
    /// Replaces the elements [first, end) with the new ones.
    void replace(long iFirst, long iEnd, std::vector<T> iNew)
    {
        if (!Bnd_ArrayDetail::clampRange(size(), iFirst, iEnd)) {
            Bnd_ArrayDetail::reportBadIndex("replace", GetConnectionName(), iFirst, size());
            return;
        }
        const long count = long(iNew.size());
        mValues.erase(mValues.begin() + iFirst, mValues.begin() + iEnd);
        mValues.insert(mValues.begin() + iFirst, std::make_move_iterator(iNew.begin()),
                       std::make_move_iterator(iNew.end()));
        notifyReplaced(iFirst, iEnd, count);
    }
    /// Moves element `from` to position `to`; answers false for an index outside the array.
    bool move(long iFrom, long iTo)
    {
        if (iFrom < 0 || iFrom >= size() || iTo < 0 || iTo >= size())
            return false;
        if (iFrom == iTo)
            return true;
        if (iFrom < iTo)
            std::rotate(mValues.begin() + iFrom, mValues.begin() + iFrom + 1,
                        mValues.begin() + iTo + 1);
        else
            std::rotate(mValues.begin() + iTo, mValues.begin() + iFrom,
                        mValues.begin() + iFrom + 1);
        SendToListeners(Bndt_Array_Notifications::MsgElementsMoved(iFrom, iTo));
        return true;
    }

    QString describeValue() const override
    {
        QStringList parts;
        for (const T &v : mValues)
            parts << Bnd_ValueTraits::toDisplayString(v);
        return QLatin1Char('[') + parts.join(QLatin1String(", ")) + QLatin1Char(']');
    }

protected:
    void notifyReplaced(long iFirst, long iEnd, long iCount)
    {
        SendToListeners(
            Bndt_Array_Notifications::MsgElementsReplaced(iFirst, iEnd, iCount, size()));
    }

    void handleMessage(const Bnd_MessageInterface &iMsg) override
    {
        if (const auto *getSize = iMsg.as<Bndt_Array_API::MsgGetSize>()) {
            if (getSize->size)
                *getSize->size = size();
        } else if (const auto *indexed = iMsg.as<Bndt_Array_API::MsgWithIndex>()) {
            handleElementMessage(iMsg, indexed->index, indexed->inner);
        } else if (const auto *mv = iMsg.as<Bndt_Array_API::MsgMoveElement>()) {
            if (IsReadOnly())
                iMsg.setStatus(Bnd_Status::ReadOnly);
            else if (!move(mv->from, mv->to))
                iMsg.setStatus(Bnd_Status::OutOfRange);
        } else {
            Bnd_ModelBase::handleMessage(iMsg);
        }
    }

private:
    void handleElementMessage(const Bnd_MessageInterface &iMsg, long i,
                              const Bnd_MessageInterface &iInner)
    {
        iInner.setStatus(Bnd_Status::Ok);
        if (const auto *ro = iInner.as<Bndt_SimpleValue_BaseAPI::MsgIsReadOnly>()) {
            if (ro->readOnly)
                *ro->readOnly = IsReadOnly();
            return;
        }
        if (i < 0 || i >= size()) {
            iInner.setStatus(Bnd_Status::OutOfRange);
            iMsg.setStatus(Bnd_Status::OutOfRange);
            return;
        }
        if (const auto *get = iInner.as<typename API::MsgGet>()) {
            if (get->value)
                *get->value = at(i);
        } else if (const auto *getVariant = iInner.as<Bndt_SimpleValue_BaseAPI::MsgGetVariant>()) {
            if (getVariant->value)
                *getVariant->value = Bnd_Variant(T(at(i)));
        } else if (const auto *set = iInner.as<typename API::MsgSet>()) {
            setFromMessage(iMsg, i, set->value);
        } else if (const auto *setVariant = iInner.as<Bndt_SimpleValue_BaseAPI::MsgSetVariant>()) {
            if (const T *v = setVariant->value.template get<T>()) {
                setFromMessage(iMsg, i, *v);
            } else {
                Kib_Assert::handleFailedAssert("0 && \"Bnde_Array<T>::handleMsgSetVariant - Value "
                                               "for variant set operation is "
                                               "of wrong type!\"",
                                               "bndcore/Bnde_Array", __LINE__);
                iMsg.setStatus(Bnd_Status::WrongType);
            }
        } else {
            iMsg.setStatus(iInner.valueType() ? Bnd_Status::WrongType : Bnd_Status::NotHandled);
        }
        iInner.setStatus(iMsg.status());
    }

    void setFromMessage(const Bnd_MessageInterface &iMsg, long i, const T &iValue)
    {
        if (IsReadOnly()) {
            iMsg.setStatus(Bnd_Status::ReadOnly);
            return;
        }
        mValues[size_t(i)] = iValue;
        notifyReplaced(i, i + 1, 1); // last: a listener may destroy this model
    }

    std::vector<T> mValues;
};

/// An array of commands: element i is performed by calling the action function with i.
///
///     Bnde_ActionArray hide("Columns.hideColumn", 5, [&](long i, const Bnd_ArgList &, Bnd_Variant
///     *) {
///         hideColumn(i); });
class BNDCORE_EXPORT Bnde_ActionArray : public Bnd_ModelBase
{
public:
    typedef boost::function<void(long, const Bnd_ArgList &, Bnd_Variant *)> Action;
    typedef boost::function<bool(long)> EnabledFunction;

    Bnde_ActionArray(const QString &iName, long iSize, const Action &iAction,
                     const EnabledFunction &iEnabled = EnabledFunction());
    ~Bnde_ActionArray() override;

    long size() const { return mSize; }
    /// Changes the number of actions (announced as a replacement at the end).
    void setSize(long iSize);
    bool isEnabled(long i) const;
    /// Tells element listeners that the enabled state of [first, end) may have changed.
    void notifyEnabledChanged(long iFirst, long iEnd);

protected:
    void handleMessage(const Bnd_MessageInterface &iMsg) override;

private:
    Action mAction;
    EnabledFunction mEnabled;
    long mSize;
};
