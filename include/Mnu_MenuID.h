#pragma once

#include "kivcore_export.h"

#include <QString>

#include <functional>

/// The handle of one menu item: an opaque pointer-sized value that the concrete manager fills
/// (the Qt manager stores the item's QAction). Empty (null) when no item was made.
class KIVCORE_EXPORT Mnu_MenuID
{
public:
    Mnu_MenuID() = default;
    explicit Mnu_MenuID(void *iValue)
        : mValue(iValue)
    { }

    bool IsValid() const { return mValue != nullptr; }
    void *value() const { return mValue; }

    bool operator==(const Mnu_MenuID &iOther) const { return mValue == iOther.mValue; }
    bool operator!=(const Mnu_MenuID &iOther) const { return mValue != iOther.mValue; }
    /// Orders by value, so an ID can key an ordered map.
    bool operator<(const Mnu_MenuID &iOther) const
    {
        return std::less<void *>()(mValue, iOther.mValue);
    }

    /// Logs the value, after the prefix.
    void dump(const QString &iPrefix) const;

private:
    void *mValue = nullptr;
};
