#pragma once

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <map>

/// An ordered set of integral values (typically row indices), stored as runs of consecutive
/// values.
///
/// A selection of a list is usually a few runs whatever the number of rows: all of 100 million
/// rows is one run of a few bytes, and a Shift-extension over a million rows changes one run.
/// Every operation costs O(log r) in the number r of runs (range operations add the runs they
/// remove); iteration visits the values in ascending order. size() is kept, not counted.
///
/// T must be a signed integral type: -1 answers "no value" (nextAfter() past the end).
template<class T> class SortedValueList
{
    typedef std::map<T, T> RunMap; // first value of a run -> last value of the run

public:
    /// Iterates over the values in ascending order.
    class const_iterator
    {
    public:
        typedef std::forward_iterator_tag iterator_category;
        typedef T value_type;
        typedef std::ptrdiff_t difference_type;
        typedef const T *pointer;
        typedef const T &reference;

        const_iterator() = default;
        const T &operator*() const { return mValue; }
        const T *operator->() const { return &mValue; }
        const_iterator &operator++()
        {
            if (mValue < mRun->second) {
                ++mValue;
            } else if (++mRun != mEnd) {
                mValue = mRun->first;
            }
            return *this;
        }
        const_iterator operator++(int)
        {
            const_iterator before = *this;
            ++*this;
            return before;
        }
        bool operator==(const const_iterator &o) const
        {
            return mRun == o.mRun && (mRun == mEnd || mValue == o.mValue);
        }
        bool operator!=(const const_iterator &o) const { return !(*this == o); }

    private:
        friend class SortedValueList;
        const_iterator(typename RunMap::const_iterator iRun, typename RunMap::const_iterator iEnd)
            : mRun(iRun)
            , mEnd(iEnd)
            , mValue(iRun != iEnd ? iRun->first : T())
        { }
        typename RunMap::const_iterator mRun;
        typename RunMap::const_iterator mEnd;
        T mValue = T();
    };

    SortedValueList() = default;
    SortedValueList(std::initializer_list<T> iValues)
    {
        for (const T &v : iValues)
            insert(v);
    }

    /// Inserts a value; returns false when it was already there.
    bool insert(const T &iValue) { return insertRange(iValue, iValue) == 1; }
    /// Removes a value; returns false when it was not there.
    bool remove(const T &iValue) { return removeRange(iValue, iValue) == 1; }

    /// Inserts every value from `iFirst` to `iLast` (both included); returns how many were new.
    /// An empty range (iLast < iFirst) changes nothing.
    long insertRange(T iFirst, T iLast)
    {
        if (iLast < iFirst)
            return 0;
        long added = long(iLast - iFirst) + 1;
        // A run that touches or overlaps the range from the left joins it.
        auto it = mRuns.upper_bound(iFirst);
        if (it != mRuns.begin()) {
            auto before = std::prev(it);
            if (before->second >= iFirst || before->second == iFirst - 1) {
                if (before->second >= iLast)
                    return 0; // already all there
                if (before->second >= iFirst)
                    added -= long(before->second - iFirst) + 1;
                iFirst = before->first;
                it = mRuns.erase(before);
            }
        }
        // Runs starting inside the range, or right after it, are swallowed.
        while (it != mRuns.end() && (it->first <= iLast || it->first - 1 == iLast)) {
            if (it->first <= iLast)
                added -= long((it->second < iLast ? it->second : iLast) - it->first) + 1;
            if (it->second > iLast)
                iLast = it->second;
            it = mRuns.erase(it);
        }
        mRuns.emplace_hint(it, iFirst, iLast);
        mSize += added;
        return added;
    }

    /// Removes every value from `iFirst` to `iLast` (both included); returns how many were
    /// there.
    long removeRange(T iFirst, T iLast)
    {
        if (iLast < iFirst || mRuns.empty())
            return 0;
        long removed = 0;
        auto it = mRuns.upper_bound(iFirst);
        if (it != mRuns.begin() && std::prev(it)->second >= iFirst)
            --it; // the run that holds iFirst
        while (it != mRuns.end() && it->first <= iLast) {
            const T first = it->first;
            const T last = it->second;
            const T cutFirst = first > iFirst ? first : iFirst;
            const T cutLast = last < iLast ? last : iLast;
            removed += long(cutLast - cutFirst) + 1;
            it = mRuns.erase(it);
            if (first < cutFirst)
                mRuns.emplace_hint(it, first, cutFirst - 1);
            if (cutLast < last) {
                mRuns.emplace_hint(it, cutLast + 1, last);
                break;
            }
        }
        mSize -= removed;
        return removed;
    }

    /// Removes every value at or above the limit; returns how many were removed.
    long removeFrom(const T &iLimit)
    {
        return mRuns.empty() ? 0 : removeRange(iLimit, mRuns.rbegin()->second);
    }

    bool contains(const T &iValue) const
    {
        auto it = mRuns.upper_bound(iValue);
        return it != mRuns.begin() && std::prev(it)->second >= iValue;
    }
    /// The smallest value above `iValue`, or -1 when there is none.
    T nextAfter(const T &iValue) const
    {
        auto it = mRuns.upper_bound(iValue);
        if (it != mRuns.begin() && std::prev(it)->second > iValue)
            return iValue + 1;
        return it != mRuns.end() ? it->first : T(-1);
    }

    void clear()
    {
        mRuns.clear();
        mSize = 0;
    }
    bool isEmpty() const { return mRuns.empty(); }
    /// The number of values (not of runs).
    long size() const { return mSize; }
    /// The smallest value; -1 when the list is empty.
    T first() const { return mRuns.empty() ? T(-1) : mRuns.begin()->first; }
    /// The largest value; -1 when the list is empty.
    T last() const { return mRuns.empty() ? T(-1) : mRuns.rbegin()->second; }

    const_iterator begin() const { return const_iterator(mRuns.begin(), mRuns.end()); }
    const_iterator end() const { return const_iterator(mRuns.end(), mRuns.end()); }

    /// The number of runs of consecutive values.
    long runCount() const { return long(mRuns.size()); }
    /// Calls `iFunction(first, last)` for each run, in ascending order.
    template<class F> void forEachRun(F iFunction) const
    {
        for (const auto &run : mRuns)
            iFunction(run.first, run.second);
    }

    bool operator==(const SortedValueList &o) const { return mSize == o.mSize && mRuns == o.mRuns; }
    bool operator!=(const SortedValueList &o) const { return !(*this == o); }

private:
    RunMap mRuns;
    long mSize = 0;
};
