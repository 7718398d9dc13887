#pragma once

#include "Kiv_ValueBinding.h"

#include <QDebug>

#include <functional>

/// A value that a widget or view shows: a Kiv_ValueBinding (so the connection-string grammar is
/// the library's one) together with what is shown without a model.
///
/// - Bound to a model, value() is the model's value.
/// - Published (when allowed), the binding holds the value itself: value() is the last value
///   set through the published model (the unbound value at first), gets answer it, and a set
///   of a different value changes it, tells the model's listeners and refreshes the widget.
/// - Otherwise value() is the unbound value given to the constructor.
///
/// The widget's refresh callback runs whenever value() may have changed: on a model
/// notification, on a connection change, on a set of the published value and after every new
/// connection string.
template<class T> class Kiv_DisplayBinding
{
public:
    enum Publishing {
        MayPublish, ///< "publish" makes the widget hold the value itself
        ListenOnly ///< "publish" is refused with a warning and leaves the value unbound
    };

    /// `iSetterName` ("Kiv_CheckBox::setCheckedStateConnectionSpec") names the operation in
    /// warnings.
    Kiv_DisplayBinding(QWidget *iOwner, const char *iSetterName, Publishing iPublishing,
                       const T &iUnboundValue = T())
        : mBinding(iOwner)
        , mUnbound(iUnboundValue)
        , mPublished(iUnboundValue)
    {
        mBinding.onChanged([this] { changed(); });
        if (iPublishing == ListenOnly) {
            mBinding.refusePublishing(iSetterName);
        } else {
            mBinding.onPublishedGet([this] { return mPublished; });
            mBinding.onPublishedSet([this](const T &iValue) {
                if (Bnd_ValueTraits::equals(mPublished, iValue))
                    return false;
                mPublished = iValue;
                changed();
                return true;
            });
        }
    }
    Kiv_DisplayBinding(const Kiv_DisplayBinding &) = delete;
    Kiv_DisplayBinding &operator=(const Kiv_DisplayBinding &) = delete;

    void onChanged(std::function<void()> iRefresh) { mRefresh = std::move(iRefresh); }

    /// Accepts a connection string; answers false (and refreshes nothing) when it equals the
    /// stored one.
    bool setConnectionString(const QByteArray &iString)
    {
        if (!mBinding.setConnectionString(iString))
            return false;
        mPublished = mUnbound;
        mWasGiven = mWasGiven || !iString.isEmpty();
        changed();
        return true;
    }
    const QByteArray &connectionString() const { return mBinding.connectionString(); }
    /// Takes the connection of the binding of the view this one is a copy of: a copy of a
    /// publishing view listens to the original's model (Kiv_ValueBinding::
    /// connectionStringForCopy()).
    void copyConnection(const Kiv_DisplayBinding &iOriginal)
    {
        setConnectionString(iOriginal.mBinding.connectionStringForCopy());
    }
    /// Whether a connection string other than "" was ever given. Labels show their host's text
    /// until then.
    bool wasGiven() const { return mWasGiven; }

    /// Binds in the environment; views give their bridge widget for "$Window" names.
    void connect(const Bnd_ConnectionEnvironmentPtr &iEnv, QWidget *iWindowOf = nullptr)
    {
        mBinding.connect(iEnv, iWindowOf);
    }
    void clear()
    {
        mBinding.clear();
        changed();
    }

    bool isConnected() const { return mBinding.isConnected(); }
    bool isPublished() const { return mBinding.isPublished(); }
    /// Whether there is a value to show (a connected model or a value held by the widget).
    bool hasValue() const { return isConnected() || mBinding.holdsValue(); }
    T value() const { return mBinding.holdsValue() ? mPublished : mBinding.value(mUnbound); }
    /// Sends a value to the bound model, echo-guarded; answers the status.
    int send(const T &iValue) { return mBinding.send(iValue); }

    Kiv_ValueBinding<T> &binding() { return mBinding; }
    const Kiv_ValueBinding<T> &binding() const { return mBinding; }

private:
    void changed()
    {
        if (mRefresh)
            mRefresh();
    }

    Kiv_ValueBinding<T> mBinding;
    T mUnbound;
    T mPublished;
    std::function<void()> mRefresh;
    bool mWasGiven = false;
};
