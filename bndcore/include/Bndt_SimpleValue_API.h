#pragma once

#include "Bnd_MessageInterface.h"
#include "Bnd_Variant.h"

/// The type-free messages of a simple value: they work whatever the value's type.
struct Bndt_SimpleValue_BaseAPI
{
    /// Reads the value into `*value`.
    class MsgGetVariant : public Bnd_MessageInterface
    {
    public:
        BND_MESSAGE_IDENTITY(Bnd_Api::SimpleValue, 0)
        explicit MsgGetVariant(Bnd_Variant *oValue)
            : Bnd_MessageInterface(StaticApi, StaticID())
            , value(oValue)
        { }
        Bnd_Variant *value;
    };

    /// Writes the value; a value of another type than the model's is reported and ignored.
    class MsgSetVariant : public Bnd_MessageInterface
    {
    public:
        BND_MESSAGE_IDENTITY(Bnd_Api::SimpleValue, 1)
        explicit MsgSetVariant(Bnd_Variant iValue)
            : Bnd_MessageInterface(StaticApi, StaticID())
            , value(std::move(iValue))
        { }
        Bnd_Variant value;
    };

    /// Asks whether the model refuses changes.
    class MsgIsReadOnly : public Bnd_MessageInterface
    {
    public:
        BND_MESSAGE_IDENTITY(Bnd_Api::SimpleValue, 2)
        explicit MsgIsReadOnly(bool *oReadOnly)
            : Bnd_MessageInterface(StaticApi, StaticID())
            , readOnly(oReadOnly)
        { }
        bool *readOnly;
    };
};

/// The typed messages of a simple value of type T.
template<class T> struct Bndt_SimpleValue_API : Bndt_SimpleValue_BaseAPI
{
    class MsgGet : public Bnd_MessageInterface
    {
    public:
        static constexpr Bnd_Api StaticApi = Bnd_Api::SimpleValue;
        static constexpr int StaticID() { return 3; }
        static const std::type_info *StaticValueType() { return &typeid(T); }
        explicit MsgGet(T *oValue)
            : Bnd_MessageInterface(StaticApi, StaticID(), StaticValueType())
            , value(oValue)
        { }
        T *value;
    };

    /// Writes the value. A read-only model answers status 3 (Bnd_Status::ReadOnly).
    class MsgSet : public Bnd_MessageInterface
    {
    public:
        static constexpr Bnd_Api StaticApi = Bnd_Api::SimpleValue;
        static constexpr int StaticID() { return 4; }
        static const std::type_info *StaticValueType() { return &typeid(T); }
        explicit MsgSet(const T &iValue)
            : Bnd_MessageInterface(StaticApi, StaticID(), StaticValueType())
            , value(iValue)
        { }
        const T &value;
    };
};

/// What a simple value tells its listeners.
struct Bndt_SimpleValue_Notifications
{
    class MsgValueChanged : public Bnd_MessageInterface
    {
    public:
        BND_MESSAGE_IDENTITY(Bnd_Api::SimpleValueNotify, 0)
        MsgValueChanged()
            : Bnd_MessageInterface(StaticApi, StaticID())
        { }
    };

    class MsgReadOnlyChanged : public Bnd_MessageInterface
    {
    public:
        BND_MESSAGE_IDENTITY(Bnd_Api::SimpleValueNotify, 1)
        explicit MsgReadOnlyChanged(bool iReadOnly)
            : Bnd_MessageInterface(StaticApi, StaticID())
            , readOnly(iReadOnly)
        { }
        bool readOnly;
    };
};
