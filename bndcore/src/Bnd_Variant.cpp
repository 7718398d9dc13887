#include "Bnd_Variant.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>

const char *bad_Bnd_Variant_cast::what() const noexcept
{
    return "bad_Bnd_Variant_cast: the variant holds a value of another type";
}

QString Bnd_ValueTraits::typeName(const std::type_info &iType)
{
    int status = 0;
    std::unique_ptr<char, void (*)(void *)> name(
        abi::__cxa_demangle(iType.name(), nullptr, nullptr, &status), std::free);
    return QString::fromLatin1(status == 0 && name ? name.get() : iType.name());
}

Bnd_Variant::Bnd_Variant(const char *iText)
    : Bnd_Variant(QString::fromUtf8(iText))
{ }

Bnd_Variant::Bnd_Variant(const Bnd_Variant &o)
    : mHolder(o.mHolder ? o.mHolder->clone() : nullptr)
{ }

Bnd_Variant::~Bnd_Variant() = default;

Bnd_Variant &Bnd_Variant::operator=(const Bnd_Variant &o)
{
    Bnd_Variant copy(o);
    swap(copy);
    return *this;
}

const std::type_info &Bnd_Variant::Type() const
{
    return mHolder ? mHolder->type() : typeid(void);
}

QString Bnd_Variant::toString() const
{
    return mHolder ? mHolder->toString() : QString();
}

bool Bnd_Variant::operator==(const Bnd_Variant &o) const
{
    if (!mHolder || !o.mHolder)
        return !mHolder && !o.mHolder;
    return mHolder->equals(*o.mHolder);
}
