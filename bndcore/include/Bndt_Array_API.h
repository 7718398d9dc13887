#pragma once

#include "Bnd_MessageInterface.h"

/// The messages of an array (of values or of actions) and of an array container.
struct Bndt_Array_API
{
    class MsgGetSize : public Bnd_MessageInterface
    {
    public:
        BND_MESSAGE_IDENTITY(Bnd_Api::Array, 0)
        explicit MsgGetSize(long *oSize)
            : Bnd_MessageInterface(StaticApi, StaticID())
            , size(oSize)
        { }
        long *size;
    };

    /// Carries a value or action message (`inner`) to element `index`. The inner message's
    /// status is copied to this one.
    class MsgWithIndex : public Bnd_MessageInterface
    {
    public:
        BND_MESSAGE_IDENTITY(Bnd_Api::Array, 1)
        MsgWithIndex(long iIndex, const Bnd_MessageInterface &iInner)
            : Bnd_MessageInterface(StaticApi, StaticID())
            , index(iIndex)
            , inner(iInner)
        { }
        long index;
        const Bnd_MessageInterface &inner;
    };

    /// Moves element `from` so that it ends up at position `to`.
    class MsgMoveElement : public Bnd_MessageInterface
    {
    public:
        BND_MESSAGE_IDENTITY(Bnd_Api::Array, 2)
        MsgMoveElement(long iFrom, long iTo)
            : Bnd_MessageInterface(StaticApi, StaticID())
            , from(iFrom)
            , to(iTo)
        { }
        long from;
        long to;
    };
};

/// What an array tells its listeners.
struct Bndt_Array_Notifications
{
    /// Elements [first, end) were replaced by `count` new ones; the array now has `newSize`.
    /// An insertion has first == end, a removal count 0.
    class MsgElementsReplaced : public Bnd_MessageInterface
    {
    public:
        BND_MESSAGE_IDENTITY(Bnd_Api::ArrayNotify, 0)
        MsgElementsReplaced(long iFirst, long iEnd, long iCount, long iNewSize)
            : Bnd_MessageInterface(StaticApi, StaticID())
            , first(iFirst)
            , end(iEnd)
            , count(iCount)
            , newSize(iNewSize)
        { }
        long first;
        long end;
        long count;
        long newSize;
    };

    /// Element `from` now stands at `to`; those between moved one place towards `from`.
    class MsgElementsMoved : public Bnd_MessageInterface
    {
    public:
        BND_MESSAGE_IDENTITY(Bnd_Api::ArrayNotify, 1)
        MsgElementsMoved(long iFrom, long iTo)
            : Bnd_MessageInterface(StaticApi, StaticID())
            , from(iFrom)
            , to(iTo)
        { }
        long from;
        long to;
    };
};
