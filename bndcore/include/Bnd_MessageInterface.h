#pragma once

#include "bndcore_export.h"

#include <typeinfo>

/// The message families. A message is identified by its family and its number within the family
/// (`getId()`), so a model dispatches with two integer compares and no string work.
enum class Bnd_Api : unsigned char {
    Root = 1, ///< notifications every listener can get (connected-changed)
    SimpleValue, ///< get, set, read-only and variant access of one value
    SimpleValueNotify, ///< value-changed, read-only-changed
    Action, ///< perform, is-enabled
    ActionNotify, ///< enabled-changed
    Array, ///< size, element access by index, move
    ArrayNotify, ///< elements replaced, elements moved
    User = 64 ///< first family free for host applications
};

/// Outcome of a message, set by whoever handles it. A send answers true exactly when the
/// status is Ok.
namespace Bnd_Status {
enum Value {
    Ok = 0,
    NotConnected = 1, ///< the listener has no model
    NotHandled = 2, ///< the model does not understand the message
    ReadOnly = 3, ///< the model refuses changes
    WrongType = 4, ///< the value or argument is of another type than the model's
    OutOfRange = 5 ///< an element index outside the array
};
}

/// Base of every message. Messages are short-lived values built on the sender's stack; their
/// out-parameters are pointers to the sender's storage and the status is written by the handler.
class BNDCORE_EXPORT Bnd_MessageInterface
{
public:
    Bnd_MessageInterface(Bnd_Api iApi, int iId, const std::type_info *iValueType = nullptr)
        : mValueType(iValueType)
        , mId(iId)
        , mApi(iApi)
    { }
    Bnd_MessageInterface(const Bnd_MessageInterface &) = default;
    virtual ~Bnd_MessageInterface();

    Bnd_Api getApi() const { return mApi; }
    int getId() const { return mId; }
    /// For the typed value messages, the C++ type of the value they carry.
    const std::type_info *valueType() const { return mValueType; }

    int status() const { return mStatus; }
    void setStatus(int iStatus) const { mStatus = iStatus; }

    /// Whether this is a message of type M (family, number and value type).
    template<class M> bool is() const
    {
        return mApi == M::StaticApi && mId == M::StaticID()
            && sameType(mValueType, M::StaticValueType());
    }
    /// This message as an M, or null when it is another message.
    template<class M> const M *as() const
    {
        return is<M>() ? static_cast<const M *>(this) : nullptr;
    }

private:
    static bool sameType(const std::type_info *a, const std::type_info *b)
    {
        return a == b || (a && b && *a == *b);
    }

    const std::type_info *mValueType;
    int mId;
    mutable int mStatus = Bnd_Status::Ok;
    Bnd_Api mApi;
};

/// Declares the static identity of a message class.
#define BND_MESSAGE_IDENTITY(api, id) \
    static constexpr Bnd_Api StaticApi = api; \
    static constexpr int StaticID() \
    { \
        return id; \
    } \
    static const std::type_info *StaticValueType() \
    { \
        return nullptr; \
    }
