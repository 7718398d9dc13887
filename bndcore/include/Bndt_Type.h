#pragma once

#include "bndcore_export.h"

#include <QString>

#include <typeinfo>

/// Description of what a model holds or what a listener expects.
///
/// A typed listener connects only to a model whose type it accepts; the check is made once, at
/// connection time, so messages need no type test on the hot path beyond a pointer compare.
class BNDCORE_EXPORT Bndt_Type
{
public:
    enum Kind {
        Any, ///< a listener that takes any model (script names, generic tools)
        Atomic, ///< one value of a C++ type
        Action, ///< a command
        Array, ///< an array of values of a C++ type
        ActionArray, ///< an array of commands
        Container ///< named children (and a size)
    };

    Kind kind() const { return mKind; }
    /// The C++ value type of an atomic value or an array element; null for the other kinds.
    const std::type_info *valueType() const { return mValueType; }
    /// "QString", "array of long", "action", ... for log lines and listings.
    QString describe() const;

    /// Whether a listener of this type can connect to a model of type `iModelType`.
    bool accepts(const Bndt_Type &iModelType) const;
    /// The type of one element of an array type (atomic for arrays, action for action arrays).
    const Bndt_Type &elementType() const;

    static const Bndt_Type &any();

    virtual ~Bndt_Type();

protected:
    Bndt_Type(Kind iKind, const std::type_info *iValueType);

private:
    Kind mKind;
    const std::type_info *mValueType;
    mutable const Bndt_Type *mElementType = nullptr;
};

class BNDCORE_EXPORT Bndt_AtomicType : public Bndt_Type
{
public:
    explicit Bndt_AtomicType(const std::type_info &iValueType);
};

class BNDCORE_EXPORT Bndt_ActionType : public Bndt_Type
{
public:
    Bndt_ActionType();
};

class BNDCORE_EXPORT Bndt_ArrayType : public Bndt_Type
{
public:
    /// An array of values of `iElementType`.
    explicit Bndt_ArrayType(const std::type_info &iElementType);
    /// An array of actions.
    Bndt_ArrayType();
};

class BNDCORE_EXPORT Bndt_ContainerType : public Bndt_Type
{
public:
    Bndt_ContainerType();
};

// Type tags. They name the interface of a model in the templates (Bnde_SimpleValue<T, Tag>,
// Bnd_ConnectionToModel<Tag>, Bnd_ConnectionToListener<Tag>) and give its description.

/// One value of type T.
template<class T> struct Bndt_SimpleValue
{
    typedef T value_type;
    static const Bndt_Type &type()
    {
        static const Bndt_AtomicType t(typeid(T));
        return t;
    }
};

/// A row index: a value of type T (normally long) where -1 means "no row".
template<class T> struct Bndt_Index : Bndt_SimpleValue<T>
{
};

/// A command taking the arguments of the signature (at most one) and returning its result.
template<class Signature> struct Bndt_Action
{
    typedef Signature signature_type;
    static const Bndt_Type &type()
    {
        static const Bndt_ActionType t;
        return t;
    }
};

/// An array of values of type T.
template<class T> struct Bndt_Array
{
    typedef T value_type;
    static const Bndt_Type &type()
    {
        static const Bndt_ArrayType t(typeid(T));
        return t;
    }
};

/// An array of commands.
template<class Signature> struct Bndt_Array<Bndt_Action<Signature>>
{
    typedef Bndt_Action<Signature> value_type;
    static const Bndt_Type &type()
    {
        static const Bndt_ArrayType t;
        return t;
    }
};

/// A container of named children; its size is the length of the rows it describes.
struct Bndt_ArrayContainer
{
    static const Bndt_Type &type()
    {
        static const Bndt_ContainerType t;
        return t;
    }
};

/// Any model at all.
struct Bndt_Any
{
    static const Bndt_Type &type() { return Bndt_Type::any(); }
};
