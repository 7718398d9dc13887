#include "ClipBin.h"

#include "Bnd_Timecode.h"
#include "Bnde_ActionModel.h"
#include "Bnde_ComputedArray.h"
#include "Bndt_Root_Notifications.h"
#include "DemoProject.h"
#include "Kiv_BridgeQScrollArea.h"
#include "Kiv_Header.h"
#include "Kiv_ListWithColumns.h"
#include "Kiv_StringView.h"

#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <numeric>

namespace {
typedef Bnde_ComputedArray<QString> TextColumn;
typedef Bnde_ActionModelWithType<Bndt_Action<void(long)>> RowAction;

// What the generated clips of the large bin are of.
const std::array<const char *, 23> cSubjects
    = { "Harbour at dawn", "Interview",    "Fishing boats", "Market square", "Gulls",
        "Sunset pier",     "Lighthouse",   "Net mending",   "Fish auction",  "Ferry arrival",
        "Storm clouds",    "Dock workers", "Cafe terrace",  "Old town",      "Tide pools",
        "Boat yard",       "Rope detail",  "Crab pots",     "Night harbour", "Rain on deck",
        "Seawall",         "Aerial coast", "Closing shot" };
const std::array<const char *, 6> cLabels = { "", "Red", "Green", "Blue", "Yellow", "Purple" };

// The alphabetical rank of each subject and label, so generated clips sort without making
// their texts.
template<size_t N> std::array<int, N> ranks(const std::array<const char *, N> &iTexts)
{
    std::array<int, N> order;
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(),
              [&](int a, int b) { return qstrcmp(iTexts[size_t(a)], iTexts[size_t(b)]) < 0; });
    std::array<int, N> rank;
    for (size_t i = 0; i < N; ++i)
        rank[size_t(order[i])] = int(i);
    return rank;
}
const std::array<int, 23> cSubjectRank = ranks(cSubjects);
const std::array<int, 6> cLabelRank = ranks(cLabels);

QString timecode(long iFrames)
{
    return Bnd_Timecode::fromFrameCount(iFrames, DemoProject::cFramesPerSecond).toString();
}

const char *const cColumnArrays[] = { "name", "duration", "in", "out", "label" };
} // namespace

ClipBin::ClipBin(DemoProject &iProject)
    : mProject(iProject)
    , mBin(QStringLiteral("Bin"))
    , mColumns(QStringLiteral("BinColumns"))
{
    const auto size = [this] {
        return rowCount();
    };
    mBin.add<TextColumn>("name", size, [this](long r) { return name(sourceOf(r)); });
    mBin.add<TextColumn>("duration", size,
                         [this](long r) { return timecode(duration(sourceOf(r))); });
    mBin.add<TextColumn>("in", size, [this](long r) { return timecode(inPoint(sourceOf(r))); });
    mBin.add<TextColumn>("out", size, [this](long r) {
        const long clip = sourceOf(r);
        return timecode(inPoint(clip) + duration(clip));
    });
    mBin.add<TextColumn>("label", size, [this](long r) { return label(sourceOf(r)); });
    mBin.add<Bnde_Container>("Actions")->add<RowAction>("open", [this](long r) { openRow(r); });
    mBin.Publish();

    const auto column = [](const char *iLabel, long iWidth, const char *iArray) {
        Kiv_ColumnsModel::Column c;
        c.label = QString::fromLatin1(iLabel);
        c.width = iWidth;
        c.minWidth = 40;
        c.readOnly = true;
        c.canHide = qstrcmp(iArray, "name") != 0;
        c.environmentVars = QStringLiteral("Field=Bin.%1").arg(QLatin1String(iArray));
        return c;
    };
    mColumns.addColumn(column("Name", 190, "name"));
    mColumns.addColumn(column("Duration", 92, "duration"));
    mColumns.addColumn(column("In", 92, "in"));
    mColumns.addColumn(column("Out", 92, "out"));
    mColumns.addColumn(column("Label", 70, "label"));
    mColumns.setSortCallback(
        [this](long iColumn, bool iAscending) { sortBy(iColumn, iAscending); });
    mColumns.publish();

    mLargeWatch.setReceiveMessageCB([this](const Bnd_MessageInterface &iMsg) {
        if (!iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>())
            return;
        mLarge = mLargeWatch.getValue(false);
        rebuild();
        mProject.say(mLarge ? QStringLiteral("Large bin: %L1 generated clips").arg(cLargeBinRows)
                            : QStringLiteral("The bin shows the project's clips"));
        projectSelectionChanged();
    });
    mLargeWatch.SetConnectionName(QStringLiteral("View.LargeBin"));
    mClipsWatch.setReceiveMessageCB([this](const Bnd_MessageInterface &iMsg) {
        if (!mLarge && iMsg.is<Bndt_Array_Notifications::MsgElementsReplaced>()) {
            rebuild();
            projectSelectionChanged();
        }
    });
    mClipsWatch.SetConnectionName(QStringLiteral("Project.Clips.name.arrayMetaData"));
    mSelectionWatch.setReceiveMessageCB([this](const Bnd_MessageInterface &iMsg) {
        if (iMsg.is<Bndt_Root_Notifications::MsgConnectedChanged>())
            projectSelectionChanged(); // the list is up: show the project's clip selected
        else
            binSelectionChanged();
    });
    mSelectionWatch.SetConnectionName(QStringLiteral("Bin.name:SelectionList"));
    mProjectSelection.setReceiveMessageCB(
        [this](const Bnd_MessageInterface &) { projectSelectionChanged(); });
    mProjectSelection.SetConnectionName(QStringLiteral("Project.Selection"));
    rebuild();
}

ClipBin::~ClipBin() = default;

void ClipBin::install(QWidget *iArea)
{
    auto *layout = new QVBoxLayout(iArea);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto *header = new Kiv_Header(iArea, QStringLiteral("binHeader"));
    header->setColumnBaseConnectionName(mColumns.baseName());
    auto *scroll = new Kiv_BridgeQScrollArea(iArea);
    scroll->setObjectName(QStringLiteral("binList"));
    scroll->setFrameShape(QFrame::NoFrame);

    // Every column shows text: one cell prototype, told its column by the variable Field.
    auto text = std::make_unique<Kiv_StringView>();
    text->SetConnectionID(QStringLiteral("$Field[$Row]"));
    Kiv_ListWithColumns::ViewTypeMap types;
    types[0] = boost::shared_ptr<Kiv_ViewInterface>(text.release());
    mList = new Kiv_ListWithColumns;
    mList->setName(QStringLiteral("Bin"));
    mList->SetViewTypeMap(types);
    mList->SetColumnDataModel(mColumns.baseName());
    mList->SetListConnectionName(QStringLiteral("Bin.name"));
    mList->SetFont(QFont(QStringLiteral("DejaVu Sans"), 9));
    mList->setSelectionMode(Kiv_ListView::SelectExtended);
    mList->setEnterActionString(QStringLiteral("Bin.Actions.open($Row)"));
    mList->setCanDrag(true); // selected clips drag from anywhere in their row
    mList->SetBackgroundColor(QColor(38, 43, 51));
    mList->SetLedgerShadeBackgroundColor(QColor(38, 43, 51));
    mList->SetLedgerShadeHighlightColor(QColor(44, 50, 60));
    mList->SetSelectionBackgroundColor(QColor(94, 129, 172));
    scroll->setChild(mList);

    Kiv_ListWithColumns *list = mList;
    header->setCreateColumnDragOverlayCB([list, header](QPoint iSize, long iColumn) {
        return list->makeColumnDragOverlay(iSize, iColumn, header);
    });
    QObject::connect(scroll->horizontalScrollBar(), &QScrollBar::valueChanged, header,
                     [header](int iValue) { header->setOffset(iValue, false); });
    layout->addWidget(header);
    layout->addWidget(scroll, 1);
}

long ClipBin::rowCount() const
{
    return mLarge ? cLargeBinRows : mProject.clipNames().size();
}

long ClipBin::sourceOf(long iRow) const
{
    return iRow >= 0 && size_t(iRow) < mOrder.size() ? mOrder[size_t(iRow)] : iRow;
}

QString ClipBin::name(long iClip) const
{
    if (!mLarge)
        return mProject.clipNames().at(iClip);
    return QStringLiteral("%1 %2")
        .arg(QLatin1String(cSubjects[size_t(iClip % 23)]))
        .arg(iClip / 23 + 1, 6, 10, QLatin1Char('0'));
}

long ClipBin::duration(long iClip) const
{
    if (!mLarge)
        return mProject.clipDurations().at(iClip);
    return DemoProject::cFramesPerSecond * (3 + (iClip * 7919) % 177) + (iClip * 31) % 25;
}

long ClipBin::inPoint(long iClip) const
{
    if (!mLarge)
        return mProject.clipInPoints().at(iClip);
    return (iClip * 104729) % (DemoProject::cFramesPerSecond * 7200);
}

QString ClipBin::label(long iClip) const
{
    if (!mLarge)
        return mProject.clipLabels().at(iClip);
    return QLatin1String(cLabels[size_t((iClip * 13) % 6)]);
}

bool ClipBin::lessThan(Column iColumn, long iA, long iB) const
{
    switch (iColumn) {
    case Name:
        if (mLarge) {
            const int a = cSubjectRank[size_t(iA % 23)];
            const int b = cSubjectRank[size_t(iB % 23)];
            return a != b ? a < b : iA / 23 < iB / 23;
        }
        return name(iA).compare(name(iB), Qt::CaseInsensitive) < 0;
    case Duration:
        return duration(iA) < duration(iB);
    case In:
        return inPoint(iA) < inPoint(iB);
    case Out:
        return inPoint(iA) + duration(iA) < inPoint(iB) + duration(iB);
    case Label:
        if (mLarge)
            return cLabelRank[size_t((iA * 13) % 6)] < cLabelRank[size_t((iB * 13) % 6)];
        return label(iA) < label(iB);
    }
    return false;
}

void ClipBin::rebuild()
{
    mOrder.resize(size_t(rowCount()));
    std::iota(mOrder.begin(), mOrder.end(), 0L);
    sortRows();
    announceRows(mAnnouncedRows);
}

void ClipBin::sortBy(long iColumn, bool iAscending)
{
    mSortColumn = Column(std::clamp(iColumn, long(Name), long(Label)));
    mSortAscending = iAscending;
    mSorted = true;
    sortRows();
    announceRows(mAnnouncedRows);
    // Rows are positions: what was selected is elsewhere now. The project's clip stays selected.
    if (mList) {
        mSyncing = true;
        mList->SetSelected(-1);
        mSyncing = false;
        projectSelectionChanged();
    }
    mProject.say(QStringLiteral("Bin sorted by %1, %2")
                     .arg(QLatin1String(cColumnArrays[mSortColumn]),
                          iAscending ? QStringLiteral("ascending") : QStringLiteral("descending")));
}

void ClipBin::sortRows()
{
    if (mSorted) {
        const Column column = mSortColumn;
        if (mSortAscending)
            std::stable_sort(mOrder.begin(), mOrder.end(),
                             [&](long a, long b) { return lessThan(column, a, b); });
        else
            std::stable_sort(mOrder.begin(), mOrder.end(),
                             [&](long a, long b) { return lessThan(column, b, a); });
    }
    // Frames before each row: the length of any run of rows is one subtraction.
    mStartOfRow.assign(mOrder.size() + 1, 0);
    for (size_t r = 0; r < mOrder.size(); ++r)
        mStartOfRow[r + 1] = mStartOfRow[r] + duration(mOrder[r]);
}

void ClipBin::announceRows(long iOldCount)
{
    mAnnouncedRows = rowCount();
    // The names last: the list counts its rows by them, and the cells read the other columns.
    for (int i = 4; i >= 0; --i)
        static_cast<TextColumn *>(mBin.child(QLatin1String(cColumnArrays[i])))
            ->notifyReplaced(0, iOldCount, mAnnouncedRows);
}

void ClipBin::openRow(long iRow)
{
    if (iRow < 0 || iRow >= rowCount())
        return;
    const long clip = sourceOf(iRow);
    if (mLarge)
        mProject.openOther(name(clip), duration(clip));
    else
        mProject.openClip(clip);
}

void ClipBin::binSelectionChanged()
{
    const SortedValueList<long> selection = mSelectionWatch.getValue();
    long frames = 0;
    const long rows = long(mOrder.size());
    selection.forEachRun([&](long iFirst, long iLast) {
        if (iFirst < rows)
            frames
                += mStartOfRow[size_t(std::min(iLast, rows - 1) + 1)] - mStartOfRow[size_t(iFirst)];
    });
    const long count = selection.size();
    mProject.setSelectionSummary(
        count == 0       ? QStringLiteral("No clip")
            : count == 1 ? QStringLiteral("1 clip, %1").arg(timecode(frames))
                         : QStringLiteral("%L1 clips, %2").arg(count).arg(timecode(frames)));
    if (!mLarge && !mSyncing && count > 0) {
        mSyncing = true;
        mProject.selectClip(sourceOf(selection.first()));
        mSyncing = false;
    }
}

void ClipBin::projectSelectionChanged()
{
    if (mSyncing || mLarge || !mList || !mSelectionWatch.isConnectedToModel())
        return;
    const long clip = mProjectSelection.getValue(-1);
    const auto it = std::find(mOrder.begin(), mOrder.end(), clip);
    if (it == mOrder.end())
        return;
    const long row = long(it - mOrder.begin());
    if (mList->GetRowSelectionListSize() == 1 && mList->IsRowSelected(row))
        return;
    mSyncing = true;
    mList->SetSelected(row);
    mSyncing = false;
    binSelectionChanged(); // the summary
}
