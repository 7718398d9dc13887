#pragma once

#include "kivcore_export.h"

/// The abstract base of the values a host keeps per list cell. A list never calls it; it is a
/// common root for hosts that hand cell objects around by value.
class KIVCORE_EXPORT Kiv_ListViewCell
{
public:
    Kiv_ListViewCell() = default;
    Kiv_ListViewCell(const Kiv_ListViewCell &) = default;
    Kiv_ListViewCell(Kiv_ListViewCell &&) = default;
    Kiv_ListViewCell &operator=(const Kiv_ListViewCell &) = default;
    Kiv_ListViewCell &operator=(Kiv_ListViewCell &&) = default;
    virtual ~Kiv_ListViewCell() = 0;
};
