// Lists at scale, each in one binary with its Qt equivalent (QListView or QTableView with
// uniform rows over a model that computes its rows, as QStringListModel answers them, and
// QItemSelectionModel):
// - one viewport paint at 1,000 and at 1,000,000 rows: the two must be within 10% of each
//   other, and no slower than the Qt view;
// - Ctrl+A and Ctrl+A again (all, then none) on 10,000,000 rows;
// - a click on the first row, then a Shift-click on the last of 1,000,000 rows;
// - a column resize and the repaint it causes, at 1,000,000 rows.
// Rows are generated on demand on both sides: neither view copies its model.

#include "BenchRatio.h"

#include "Bnd_ConnectionToModel.h"
#include "Bnde_ComputedArray.h"
#include "Kiv_BridgeQScrollArea.h"
#include "Kiv_ColumnsModel.h"
#include "Kiv_ListWithColumns.h"
#include "Kiv_LongIntView.h"
#include "Kiv_StringView.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QHeaderView>
#include <QListView>
#include <QMouseEvent>
#include <QPixmap>
#include <QScrollBar>
#include <QTableView>

#include <memory>

namespace {

const QSize cViewport(600, 600);

QString clipName(long i)
{
    return QStringLiteral("Clip %1").arg(i);
}

// Sends a click with the modifiers to the viewport.
void click(QWidget *iViewport, const QPoint &iPos, Qt::KeyboardModifiers iModifiers)
{
    const QPointF global = iViewport->mapToGlobal(QPointF(iPos));
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(iPos), global, Qt::LeftButton,
                      Qt::LeftButton, iModifiers);
    QCoreApplication::sendEvent(iViewport, &press);
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(iPos), global, Qt::LeftButton,
                        Qt::NoButton, iModifiers);
    QCoreApplication::sendEvent(iViewport, &release);
}

// ---- Ours: a list of generated clip names, or a bin of three generated columns.

struct OurBin
{
    OurBin(long iRows, bool iColumns)
        : rows(iRows)
        , base(QStringLiteral("BenchBin%1%2").arg(iRows).arg(iColumns ? 'c' : 'l'))
        , names(
              base + QStringLiteral(".name"), [this] { return rows; }, clipName)
        , durations(
              base + QStringLiteral(".duration"), [this] { return rows; },
              [](long i) { return 25 * (i % 600); })
        , columns(base + QStringLiteral("Columns"))
    {
        names.Publish();
        durations.Publish();
        auto text = std::make_unique<Kiv_StringView>();
        text->SetConnectionID(QStringLiteral("$Field[$Row]"));
        auto number = std::make_unique<Kiv_LongIntView>();
        number->setConnectionName(QStringLiteral("$Field[$Row]"));
        if (iColumns) {
            columns.addColumn(
                { "Name", 1, 200, 20, 0, true, true, true, "Field=" + names.GetConnectionName() });
            columns.addColumn({ "Duration", 2, 100, 20, 1, true, true, true,
                                "Field=" + durations.GetConnectionName() });
            columns.addColumn({ "Name again", 3, 200, 20, 0, true, true, true,
                                "Field=" + names.GetConnectionName() });
            columns.publish();
            auto *bin = new Kiv_ListWithColumns;
            Kiv_ListWithColumns::ViewTypeMap types;
            types[0] = boost::shared_ptr<Kiv_ViewInterface>(text.release());
            types[1] = boost::shared_ptr<Kiv_ViewInterface>(number.release());
            bin->SetViewTypeMap(types);
            bin->SetColumnDataModel(columns.baseName());
            bin->SetRowHeight(20);
            list = bin;
        } else {
            text->SetConnectionID(names.GetConnectionName() + QStringLiteral("[$Row]"));
            text->setSize(QSize(cViewport.width(), 20));
            list = new Kiv_ListView;
            list->SetRowView(text.release());
        }
        list->SetListConnectionName(names.GetConnectionName());
        list->setSelectionMode(Kiv_ListView::SelectExtended);
        area.setFrameShape(QFrame::NoFrame);
        area.setChild(list);
        area.resize(cViewport);
        area.show();
        area.makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
        QCoreApplication::processEvents();
    }

    long rows;
    QString base;
    Bnde_ComputedArray<QString> names;
    Bnde_ComputedArray<long> durations;
    Kiv_ColumnsModel columns;
    Kiv_BridgeQScrollArea area;
    Kiv_ListView *list = nullptr;
};

// ---- Qt's: the same rows through QAbstractItemModel.

class ClipModel : public QAbstractTableModel
{
public:
    ClipModel(long iRows, int iColumns)
        : mRows(iRows)
        , mColumns(iColumns)
    { }
    int rowCount(const QModelIndex &iParent) const override
    {
        return iParent.isValid() ? 0 : int(mRows);
    }
    int columnCount(const QModelIndex &iParent) const override
    {
        return iParent.isValid() ? 0 : mColumns;
    }
    QVariant data(const QModelIndex &iIndex, int iRole) const override
    {
        if (iRole != Qt::DisplayRole)
            return QVariant();
        if (iIndex.column() == 1)
            return QString::number(25 * (iIndex.row() % 600));
        return clipName(iIndex.row());
    }

private:
    long mRows;
    int mColumns;
};

template<class View> struct QtBin
{
    QtBin(long iRows, int iColumns)
        : model(iRows, iColumns)
    {
        view.setModel(&model);
        view.setSelectionMode(QAbstractItemView::ExtendedSelection);
        view.setFrameShape(QFrame::NoFrame);
        view.resize(cViewport);
        view.show();
        QCoreApplication::processEvents();
    }
    ClipModel model;
    View view;
};

struct QtList : QtBin<QListView>
{
    explicit QtList(long iRows)
        : QtBin(iRows, 1)
    {
        view.setUniformItemSizes(true);
        QCoreApplication::processEvents();
    }
};

// ---- Painting

void BM_List_Paint(benchmark::State &state)
{
    OurBin bin(state.range(0), false);
    QPixmap target(cViewport);
    for (auto _ : state)
        bin.area.viewport()->render(&target);
}
BENCHMARK(BM_List_Paint)->Arg(1000)->Arg(1000000)->Unit(benchmark::kMicrosecond);

void BM_QListView_Paint(benchmark::State &state)
{
    QtList qt(state.range(0));
    QPixmap target(cViewport);
    for (auto _ : state)
        qt.view.viewport()->render(&target);
}
BENCHMARK(BM_QListView_Paint)->Arg(1000)->Arg(1000000)->Unit(benchmark::kMicrosecond);

// ---- Select all, then none

constexpr long cHuge = 10000000;

void BM_List_SelectAllAndNone(benchmark::State &state)
{
    OurBin bin(cHuge, false);
    for (auto _ : state) {
        bin.list->SetSelected(0, true); // Ctrl+A: all
        bin.list->SetSelected(0, true); // and again: none
    }
    bin.list->SetSelected(0, true);
    if (bin.list->GetRowSelectionListSize() != cHuge)
        state.SkipWithError("not everything was selected");
}
BENCHMARK(BM_List_SelectAllAndNone)->Unit(benchmark::kMicrosecond);

void BM_QListView_SelectAllAndNone(benchmark::State &state)
{
    QtList qt(cHuge);
    for (auto _ : state) {
        qt.view.selectAll();
        qt.view.clearSelection();
    }
}
BENCHMARK(BM_QListView_SelectAllAndNone)->Unit(benchmark::kMillisecond);

// ---- Click the first row, Shift-click the last

constexpr long cMillion = 1000000;

// Scrolls to the top, clicks the first row, scrolls to the bottom and Shift-clicks the last.
template<class LastRowCentre>
void clickFirstShiftClickLast(QAbstractScrollArea &iArea, const LastRowCentre &iLastRow)
{
    QScrollBar *bar = iArea.verticalScrollBar();
    bar->setValue(0);
    click(iArea.viewport(), QPoint(20, 5), Qt::NoModifier);
    bar->setValue(bar->maximum());
    click(iArea.viewport(), iLastRow(), Qt::ShiftModifier);
}

void BM_List_ShiftClickExtend(benchmark::State &state)
{
    OurBin bin(cMillion, false);
    QWidget *port = bin.area.viewport();
    for (auto _ : state)
        clickFirstShiftClickLast(bin.area, [port] { return QPoint(20, port->height() - 5); });
    if (bin.list->GetRowSelectionListSize() != cMillion)
        state.SkipWithError("the Shift-click did not extend over every row");
}
BENCHMARK(BM_List_ShiftClickExtend)->Unit(benchmark::kMicrosecond);

void BM_QListView_ShiftClickExtend(benchmark::State &state)
{
    QtList qt(cMillion);
    const QModelIndex last = qt.model.index(int(cMillion - 1), 0);
    for (auto _ : state)
        clickFirstShiftClickLast(qt.view, [&] { return qt.view.visualRect(last).center(); });
    if (qt.view.selectionModel()->selectedIndexes().size() != cMillion)
        state.SkipWithError("the Shift-click did not extend over every row");
}
BENCHMARK(BM_QListView_ShiftClickExtend)->Unit(benchmark::kMicrosecond);

// ---- Resize a column, repaint

void BM_Columns_ResizeRepaint(benchmark::State &state)
{
    OurBin bin(cMillion, true);
    Bnd_ConnectionToModel<Bndt_Array<long>> widths(bin.columns.baseName()
                                                   + QStringLiteral(".width"));
    QPixmap target(cViewport);
    long width = 200;
    for (auto _ : state) {
        width = width == 200 ? 201 : 200;
        widths.setAt(0, width);
        bin.area.viewport()->render(&target);
    }
}
BENCHMARK(BM_Columns_ResizeRepaint)->Unit(benchmark::kMicrosecond);

void BM_QTableView_ResizeRepaint(benchmark::State &state)
{
    QtBin<QTableView> qt(cMillion, 3);
    qt.view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    qt.view.verticalHeader()->setDefaultSectionSize(20);
    qt.view.verticalHeader()->hide();
    QPixmap target(cViewport);
    int width = 200;
    for (auto _ : state) {
        width = width == 200 ? 201 : 200;
        qt.view.horizontalHeader()->resizeSection(0, width);
        qt.view.viewport()->render(&target);
    }
}
BENCHMARK(BM_QTableView_ResizeRepaint)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return BenchRatio::runAndCompare(
        argc, argv,
        { { "BM_List_Paint/1000000", "BM_List_Paint/1000", 1.1 },
          { "BM_List_Paint/1000000", "BM_QListView_Paint/1000000", 1.0 },
          { "BM_List_SelectAllAndNone", "BM_QListView_SelectAllAndNone", 0 },
          { "BM_List_ShiftClickExtend", "BM_QListView_ShiftClickExtend", 0 },
          { "BM_Columns_ResizeRepaint", "BM_QTableView_ResizeRepaint", 0 } });
}
