#pragma once

#include "Bnd_ValueTraits.h"
#include "bndcore_export.h"

#include <memory>
#include <typeinfo>
#include <utility>
#include <vector>

/// Thrown by bnd_variant_cast when a variant holds another type. It never leaves the runtime:
/// models catch it and report the mismatch.
class BNDCORE_EXPORT bad_Bnd_Variant_cast : public std::bad_cast
{
public:
    const char *what() const noexcept override;
};

namespace Bnd_VariantImpl {

class HolderBase
{
public:
    virtual ~HolderBase() = default;
    virtual HolderBase *clone() const = 0;
    virtual const std::type_info &type() const = 0;
    virtual QString toString() const = 0;
    virtual bool equals(const HolderBase &o) const = 0;
};

/// The typed payload of a variant.
template<class T> class Holder final : public HolderBase
{
public:
    explicit Holder(const T &v)
        : value(v)
    { }
    explicit Holder(T &&v)
        : value(std::move(v))
    { }
    HolderBase *clone() const override { return new Holder(value); }
    const std::type_info &type() const override { return typeid(T); }
    QString toString() const override { return Bnd_ValueTraits::toDisplayString(value); }
    bool equals(const HolderBase &o) const override
    {
        return o.type() == typeid(T)
            && Bnd_ValueTraits::equals(value, static_cast<const Holder &>(o).value);
    }
    T value;
};

} // namespace Bnd_VariantImpl

/// A type-tagged value: empty, or one value of any copyable type.
///
/// Variants carry values through the type-free messages (MsgGetVariant, MsgSetVariant, action
/// arguments and results). A C string is stored as a QString.
class BNDCORE_EXPORT Bnd_Variant
{
public:
    Bnd_Variant() = default;
    template<class T,
             class = std::enable_if_t<!std::is_same<std::decay_t<T>, Bnd_Variant>::value
                                      && !std::is_same<std::decay_t<T>, const char *>::value
                                      && !std::is_same<std::decay_t<T>, char *>::value>>
    Bnd_Variant(T &&iValue) // NOLINT: implicit on purpose, a variant stands in for its value
        : mHolder(new Bnd_VariantImpl::Holder<std::decay_t<T>>(std::forward<T>(iValue)))
    { }
    Bnd_Variant(const char *iText);
    Bnd_Variant(const Bnd_Variant &o);
    Bnd_Variant(Bnd_Variant &&o) noexcept = default;
    ~Bnd_Variant();
    Bnd_Variant &operator=(const Bnd_Variant &o);
    Bnd_Variant &operator=(Bnd_Variant &&o) noexcept = default;

    void swap(Bnd_Variant &o) noexcept { mHolder.swap(o.mHolder); }
    /// The type of the held value; typeid(void) when empty.
    const std::type_info &Type() const;
    bool isEmpty() const { return !mHolder; }
    void clear() { mHolder.reset(); }

    /// The held value if it is a T, else null. Never throws.
    template<class T> const T *get() const
    {
        return mHolder && mHolder->type() == typeid(T)
            ? &static_cast<const Bnd_VariantImpl::Holder<T> *>(mHolder.get())->value
            : nullptr;
    }
    template<class T> T *get()
    {
        return mHolder && mHolder->type() == typeid(T)
            ? &static_cast<Bnd_VariantImpl::Holder<T> *>(mHolder.get())->value
            : nullptr;
    }

    /// A short human-readable text of the value ("" when empty).
    QString toString() const;
    bool operator==(const Bnd_Variant &o) const;
    bool operator!=(const Bnd_Variant &o) const { return !(*this == o); }

private:
    std::unique_ptr<Bnd_VariantImpl::HolderBase> mHolder;
};

/// The held value as a T; throws bad_Bnd_Variant_cast when the variant holds something else.
template<class T> T bnd_variant_cast(const Bnd_Variant &iVariant)
{
    if (const T *p = iVariant.get<T>())
        return *p;
    throw bad_Bnd_Variant_cast();
}

/// The argument list of an action message.
typedef std::vector<Bnd_Variant> Bnd_ArgList;
