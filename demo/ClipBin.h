#pragma once

// The showcase's bin: the project's clips (or a million generated ones) in a list with
// columns under a column header. The bin publishes what the list shows as computed arrays
// ("Bin.name", "Bin.duration", ...) in the bin's sort order, and a columns model
// ("BinColumns") that the header and the list share; it keeps the project's current clip and
// the bin's selection in step.

#include "Bnd_ConnectionToModel.h"
#include "Bnde_Container.h"
#include "Kiv_ColumnsModel.h"
#include "SortedValueList.h"

#include <QString>

#include <vector>

class DemoProject;
class Kiv_ListWithColumns;
class QWidget;

class ClipBin
{
public:
    /// Rows of the large bin.
    static constexpr long cLargeBinRows = 1000000;

    explicit ClipBin(DemoProject &iProject);
    ~ClipBin();

    /// Builds the header and the list into the (empty) widget. The window connects them.
    void install(QWidget *iArea);
    /// Opens the clip of a row of the bin (Enter, a drop on the monitor).
    void openRow(long iRow);
    Kiv_ListWithColumns *list() const { return mList; }

private:
    enum Column { Name, Duration, In, Out, Label };

    long rowCount() const;
    long sourceOf(long iRow) const;
    QString name(long iClip) const;
    long duration(long iClip) const;
    long inPoint(long iClip) const;
    QString label(long iClip) const;
    bool lessThan(Column iColumn, long iA, long iB) const;

    void rebuild();
    void sortBy(long iColumn, bool iAscending);
    void sortRows();
    void announceRows(long iOldCount);
    void binSelectionChanged();
    void projectSelectionChanged();

    DemoProject &mProject;
    bool mLarge = false;
    long mAnnouncedRows = 0;
    std::vector<long> mOrder; // row of the bin -> clip
    std::vector<long> mStartOfRow; // frames before each row, for the selection's total length
    Column mSortColumn = Name;
    bool mSortAscending = true;
    bool mSorted = false;
    bool mSyncing = false;

    Bnde_Container mBin;
    Kiv_ColumnsModel mColumns;
    Kiv_ListWithColumns *mList = nullptr; // owned by its scroll area
    Bnd_ConnectionToModel<Bndt_SimpleValue<bool>> mLargeWatch;
    Bnd_ListenerBase mClipsWatch;
    Bnd_ConnectionToModel<Bndt_SimpleValue<SortedValueList<long>>> mSelectionWatch;
    Bnd_ConnectionToModel<Bndt_SimpleValue<long>> mProjectSelection;
};
