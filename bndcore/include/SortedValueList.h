#pragma once

#include <algorithm>
#include <initializer_list>
#include <vector>

/// An ordered set of values (typically row indices) kept in a sorted vector:
/// lookups are binary searches and iteration is in ascending order.
template<class T> class SortedValueList
{
public:
    typedef typename std::vector<T>::const_iterator const_iterator;

    SortedValueList() = default;
    SortedValueList(std::initializer_list<T> iValues)
    {
        for (const T &v : iValues)
            insert(v);
    }

    /// Inserts a value; returns false when it was already there.
    bool insert(const T &iValue)
    {
        auto it = std::lower_bound(mValues.begin(), mValues.end(), iValue);
        if (it != mValues.end() && !(iValue < *it))
            return false;
        mValues.insert(it, iValue);
        return true;
    }
    /// Removes a value; returns false when it was not there.
    bool remove(const T &iValue)
    {
        auto it = std::lower_bound(mValues.begin(), mValues.end(), iValue);
        if (it == mValues.end() || iValue < *it)
            return false;
        mValues.erase(it);
        return true;
    }
    /// Removes every value at or above the limit; returns how many were removed.
    int removeFrom(const T &iLimit)
    {
        auto it = std::lower_bound(mValues.begin(), mValues.end(), iLimit);
        const int n = int(mValues.end() - it);
        mValues.erase(it, mValues.end());
        return n;
    }
    bool contains(const T &iValue) const
    {
        return std::binary_search(mValues.begin(), mValues.end(), iValue);
    }
    void clear() { mValues.clear(); }
    bool isEmpty() const { return mValues.empty(); }
    int size() const { return int(mValues.size()); }
    const T &first() const { return mValues.front(); }
    const T &last() const { return mValues.back(); }
    const T &at(int i) const { return mValues[size_t(i)]; }
    const_iterator begin() const { return mValues.begin(); }
    const_iterator end() const { return mValues.end(); }
    const std::vector<T> &values() const { return mValues; }

    bool operator==(const SortedValueList &o) const { return mValues == o.mValues; }
    bool operator!=(const SortedValueList &o) const { return mValues != o.mValues; }

private:
    std::vector<T> mValues;
};
