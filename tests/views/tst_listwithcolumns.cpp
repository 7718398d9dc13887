// The list with columns over a published columns model: the row stack it builds, how it follows
// hidden, shown, moved, resized and dragged columns, and cell-by-cell keyboard navigation.

#include "Bnd_ConnectionToModel.h"
#include "Bnde_Array.h"
#include "Bnde_SimpleValue.h"
#include "Kiv_BlankView.h"
#include "Kiv_BridgeQScrollArea.h"
#include "Kiv_ColumnsModel.h"
#include "Kiv_HStackView.h"
#include "Kiv_LineEdit.h"
#include "Kiv_ListWithColumns.h"
#include "Kiv_LongIntView.h"
#include "Kiv_StringView.h"

#include <QtTest>

namespace {
QString uniqueBase()
{
    static int counter = 0;
    return QStringLiteral("LWC%1").arg(++counter);
}

// Clips (name, duration) in a list of three columns: Name (an editable text), Duration (a
// read-only number) and Notes, whose view type has no prototype (an editable blank).
struct Bin
{
    Bin()
        : base(uniqueBase())
        , names(base + QStringLiteral(".name"),
                { "harbour", "gulls", "pier", "market", "boats", "dawn" })
        , durations(base + QStringLiteral(".duration"), { 10, 20, 30, 40, 50, 60 })
        , columns(base + QStringLiteral("Columns"))
        , list(new Kiv_ListWithColumns)
    {
        names.Publish();
        durations.Publish();
        columns.addColumn(
            { "Name", 1, 120, 20, 0, true, true, false, "Field=" + names.GetConnectionName() });
        columns.addColumn({ "Duration", 2, 60, 20, 1, true, true, true,
                            "Field=" + durations.GetConnectionName() });
        columns.addColumn({ "Notes", 3, 80, 20, 7, true, true, false, QString() });
        columns.publish();

        auto text = std::make_unique<Kiv_StringView>();
        text->SetConnectionID(QStringLiteral("$Field[$Row]"));
        auto number = std::make_unique<Kiv_LongIntView>();
        number->setConnectionName(QStringLiteral("$Field[$Row]"));
        Kiv_ListWithColumns::ViewTypeMap types;
        types[0] = boost::shared_ptr<Kiv_ViewInterface>(text.release());
        types[1] = boost::shared_ptr<Kiv_ViewInterface>(number.release());
        list->SetViewTypeMap(types);
        list->SetColumnDataModel(columns.baseName());
        list->SetListConnectionName(names.GetConnectionName());
        list->SetRowHeight(20);
        list->setSelectionMode(Kiv_ListView::SelectExtended);
        area.setFrameShape(QFrame::NoFrame);
        area.setChild(list);
        area.resize(400, 200);
        area.show();
        area.makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
    }
    Kiv_HStackView *row() const { return dynamic_cast<Kiv_HStackView *>(list->getRowView()); }
    // The names of the row's sub-views and their widths: "column1:120 |5 column2:60 |5".
    QString layout() const
    {
        QStringList parts;
        for (int i = 1; i < row()->subViewCount(); ++i) {
            const Kiv_ViewInterface *view = row()->subViewAt(i);
            parts << (i % 2 ? view->getName() + QLatin1Char(':') : QStringLiteral("|"))
                    + QString::number(view->getWidth());
        }
        return parts.join(QLatin1Char(' '));
    }
    // The middle of a column's cell in a row, in viewport coordinates.
    QPoint cell(long iRow, long iColumn) const
    {
        const QRect r = row()
                            ->subViewAt(Kiv_ListWithColumns::columnIndexToViewIndex(iColumn))
                            ->getRectInParent();
        return QPoint(r.center().x(), int(iRow) * 20 + 10);
    }

    QString base;
    Bnde_Array<QString> names;
    Bnde_Array<long> durations;
    Kiv_ColumnsModel columns;
    Kiv_BridgeQScrollArea area;
    Kiv_ListWithColumns *list;
};
} // namespace

class tst_ListWithColumns : public QObject
{
    Q_OBJECT

private slots:
    void buildsOneCellPerVisibleColumn();
    void followsTheColumns_data();
    void followsTheColumns();
    void greysTheDraggedColumn();
    void keysMoveFromCellToCell_data();
    void keysMoveFromCellToCell();
    void editorWritesItsOwnRow();
    void returnLeavesTheCellBeforeOpening();
};

void tst_ListWithColumns::buildsOneCellPerVisibleColumn()
{
    Bin bin;
    QCOMPARE(bin.layout(), QString("column0:120 |5 column1:60 |5 column2:80 |5"));
    QVERIFY(dynamic_cast<Kiv_BlankView *>(bin.row()->subViewAt(5))); // no prototype: blank
    // Each cell reads its column of the row under the point.
    QCOMPARE(bin.list->findUiName(bin.cell(2, 0)), QString("ListView.RowView(2).column0"));
    QCOMPARE(dynamic_cast<Kiv_StringView *>(bin.row()->subViewAt(1))->text(), QString("pier"));
    long row = -1;
    long column = -1;
    QCOMPARE(bin.list->GetCellAt(bin.cell(4, 1), &row, &column), bin.row()->subViewAt(3));
    QCOMPARE(row, 4L);
    QCOMPARE(column, 1L);
}

void tst_ListWithColumns::followsTheColumns_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("layout");
    QTest::newRow("hide") << "hide 1"
                          << "column0:120 |5 column2:80 |5";
    QTest::newRow("hide and show first") << "hide 1; show 1 0"
                                         << "column1:60 |5 column0:120 |5 column2:80 |5";
    QTest::newRow("move 0 to 2") << "move 0 2"
                                 << "column1:60 |5 column2:80 |5 column0:120 |5";
    QTest::newRow("move 0 to 2 and back") << "move 0 2; move 2 0"
                                          << "column0:120 |5 column1:60 |5 column2:80 |5";
    QTest::newRow("move 2 to 1") << "move 2 1"
                                 << "column0:120 |5 column2:80 |5 column1:60 |5";
    QTest::newRow("resize") << "width 2 33"
                            << "column0:120 |5 column1:60 |5 column2:33 |5";
    QTest::newRow("resize below the minimum") << "width 0 5"
                                              << "column0:20 |5 column1:60 |5 column2:80 |5";
}

void tst_ListWithColumns::followsTheColumns()
{
    QFETCH(QString, change);
    QFETCH(QString, layout);
    Bin bin;
    Bnd_ConnectionToModel<Bndt_Array<long>> visible(bin.columns.baseName()
                                                    + QStringLiteral(".sortedVisibleColumns"));
    Bnd_ConnectionToModel<Bndt_Array<long>> widths(bin.columns.baseName()
                                                   + QStringLiteral(".width"));
    for (const QString &step : change.split(QStringLiteral("; "))) {
        const QStringList w = step.split(QLatin1Char(' '));
        if (w[0] == QLatin1String("hide"))
            QVERIFY(bin.columns.hideColumn(w[1].toLong()));
        else if (w[0] == QLatin1String("show"))
            QVERIFY(bin.columns.showColumn(w[1].toLong(), w[2].toLong()));
        else if (w[0] == QLatin1String("move"))
            QVERIFY(visible.moveElement(w[1].toLong(), w[2].toLong()));
        else
            QCOMPARE(widths.setAt(w[1].toLong(), w[2].toLong()), int(Bnd_Status::Ok));
    }
    QCOMPARE(bin.layout(), layout);
    // The list's width follows the row.
    QCOMPARE(bin.list->getMinSize().width(), bin.row()->getWidth());
}

void tst_ListWithColumns::greysTheDraggedColumn()
{
    Bin bin;
    Bnd_ConnectionToModel<Bndt_SimpleValue<long>> dragged(bin.columns.baseName()
                                                          + QStringLiteral(".columnBeingDragged"));
    const QPoint durationOfRow0 = bin.cell(0, 1);
    const auto colourAt = [&](const QPoint &iPoint) {
        return bin.area.viewport()->grab().toImage().pixelColor(iPoint);
    };
    dragged.setValue(1);
    QCOMPARE(colourAt(durationOfRow0), QColor(136, 136, 136));
    dragged.setValue(-1);
    QVERIFY(colourAt(durationOfRow0) != QColor(136, 136, 136));
}

// From a clicked cell (row, column), a key moves the active cell; Notes (column 2) and Name
// (column 0) are editable, Duration is not. Six rows.
void tst_ListWithColumns::keysMoveFromCellToCell_data()
{
    QTest::addColumn<QPoint>("clicked"); // (column, row)
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QPoint>("active");
    QTest::addColumn<long>("selected");
    const int shift = Qt::ShiftModifier;
    QTest::newRow("Tab skips the read-only cell")
        << QPoint(0, 0) << int(Qt::Key_Tab) << 0 << QPoint(2, 0) << 0L;
    QTest::newRow("Tab wraps to the next row")
        << QPoint(2, 0) << int(Qt::Key_Tab) << 0 << QPoint(0, 1) << 1L;
    QTest::newRow("Shift+Tab wraps to the row before")
        << QPoint(0, 1) << int(Qt::Key_Tab) << shift << QPoint(2, 0) << 0L;
    QTest::newRow("Backtab") << QPoint(2, 3) << int(Qt::Key_Backtab) << 0 << QPoint(0, 3) << 3L;
    QTest::newRow("Shift+Tab on the first cell stays")
        << QPoint(0, 0) << int(Qt::Key_Tab) << shift << QPoint(0, 0) << 0L;
    QTest::newRow("Tab on the last cell stays")
        << QPoint(2, 5) << int(Qt::Key_Tab) << 0 << QPoint(2, 5) << 5L;
    QTest::newRow("Down keeps the column")
        << QPoint(2, 1) << int(Qt::Key_Down) << 0 << QPoint(2, 2) << 2L;
    QTest::newRow("Up from the first row wraps")
        << QPoint(0, 0) << int(Qt::Key_Up) << 0 << QPoint(0, 5) << 5L;
    QTest::newRow("a read-only cell is not worked on")
        << QPoint(1, 2) << int(Qt::Key_Down) << 0 << QPoint(-1, -1) << 3L;
}

void tst_ListWithColumns::keysMoveFromCellToCell()
{
    QFETCH(QPoint, clicked);
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(QPoint, active);
    QFETCH(long, selected);
    Bin bin;
    QWidget *port = bin.area.viewport();
    QTest::mouseClick(port, Qt::LeftButton, Qt::NoModifier, bin.cell(clicked.y(), clicked.x()));
    QTest::keyClick(port, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QCOMPARE(QPoint(int(bin.list->activeColumn()), int(bin.list->activeRow())), active);
    QCOMPARE(bin.list->GetFirstRowSelection(), selected);
    QCOMPARE(bin.list->GetRowSelectionListSize(), 1L);
}

// Tab into a text cell opens its editor; what is typed goes to that row, however the list
// repaints (every row it paints moves the current row).
void tst_ListWithColumns::editorWritesItsOwnRow()
{
    Bin bin;
    QWidget *port = bin.area.viewport();
    QTest::mouseClick(port, Qt::LeftButton, Qt::NoModifier, bin.cell(0, 2));
    QTest::keyClick(port, Qt::Key_Tab); // to the name of row 1
    auto *editor = port->findChild<Kiv_LineEdit *>();
    QVERIFY(editor);
    bin.area.grab();
    editor->selectAll();
    QTest::keyClicks(editor, "seals");
    QCOMPARE(bin.names.at(1), QString("seals"));
    QCOMPARE(bin.names.at(5), QString("dawn"));
}

void tst_ListWithColumns::returnLeavesTheCellBeforeOpening()
{
    Bin bin;
    Bnde_SimpleValue<QString> opened(bin.base + QStringLiteral(".opened"));
    opened.Publish();
    bin.list->setEnterActionString(opened.GetConnectionName() + " = "
                                   + bin.names.GetConnectionName() + "[$Row]");
    bin.area.makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
    QWidget *port = bin.area.viewport();
    QTest::mouseClick(port, Qt::LeftButton, Qt::NoModifier, bin.cell(3, 0)); // an editable cell
    bin.area.grab();
    QTest::keyClick(port, Qt::Key_Return);
    QCOMPARE(opened.getValue(), QString()); // the first Return only leaves the cell
    QCOMPARE(bin.list->activeRow(), -1L);
    QTest::keyClick(port, Qt::Key_Return);
    QCOMPARE(opened.getValue(), QString("market"));
    QTest::mouseClick(port, Qt::LeftButton, Qt::NoModifier, bin.cell(4, 1)); // read-only
    QTest::keyClick(port, Qt::Key_Return);
    QCOMPARE(opened.getValue(), QString("boats"));
}

QTEST_MAIN(tst_ListWithColumns)
#include "tst_listwithcolumns.moc"
