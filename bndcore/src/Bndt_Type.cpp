#include "Bndt_Type.h"

#include "Bnd_ValueTraits.h"

Bndt_Type::Bndt_Type(Kind iKind, const std::type_info *iValueType)
    : mKind(iKind)
    , mValueType(iValueType)
{ }

Bndt_Type::~Bndt_Type() = default;

const Bndt_Type &Bndt_Type::any()
{
    static const Bndt_Type t(Any, nullptr);
    return t;
}

QString Bndt_Type::describe() const
{
    switch (mKind) {
    case Any:
        return QStringLiteral("any");
    case Atomic:
        return Bnd_ValueTraits::typeName(*mValueType);
    case Action:
        return QStringLiteral("action");
    case Array:
        return QStringLiteral("array of ") + Bnd_ValueTraits::typeName(*mValueType);
    case ActionArray:
        return QStringLiteral("array of actions");
    case Container:
        return QStringLiteral("container");
    }
    return QString();
}

bool Bndt_Type::accepts(const Bndt_Type &iModelType) const
{
    if (mKind == Any || iModelType.mKind == Any)
        return true;
    if (mKind != iModelType.mKind)
        return false;
    if (mKind == Atomic || mKind == Array)
        return *mValueType == *iModelType.mValueType;
    return true;
}

const Bndt_Type &Bndt_Type::elementType() const
{
    if (!mElementType) {
        if (mKind == Array)
            mElementType = new Bndt_AtomicType(*mValueType); // one per array type, kept for good
        else if (mKind == ActionArray)
            mElementType = new Bndt_ActionType;
        else
            mElementType = &any();
    }
    return *mElementType;
}

Bndt_AtomicType::Bndt_AtomicType(const std::type_info &iValueType)
    : Bndt_Type(Atomic, &iValueType)
{ }

Bndt_ActionType::Bndt_ActionType()
    : Bndt_Type(Action, nullptr)
{ }

Bndt_ArrayType::Bndt_ArrayType(const std::type_info &iElementType)
    : Bndt_Type(Array, &iElementType)
{ }

Bndt_ArrayType::Bndt_ArrayType()
    : Bndt_Type(ActionArray, nullptr)
{ }

Bndt_ContainerType::Bndt_ContainerType()
    : Bndt_Type(Container, nullptr)
{ }
