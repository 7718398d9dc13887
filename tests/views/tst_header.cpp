// Kiv_Header: the layout and drag maths, and the header driving a real columns model with the
// mouse.
#include "Bnd_ConnectionToModel.h"
#include "Bnd_Utils.h"
#include "Bnde_ActionModel.h"
#include "Bnde_SimpleValue.h"
#include "Kiv_ColumnsModel.h"
#include "Kiv_Header.h"
#include "Kiv_PopupMenu.h"
#include "Kiv_TransparentOverlay.h"
#include "views/Kiv_HeaderGeometry.h"

#include <QtTest>

using namespace Kiv_HeaderGeometry;

namespace {

const char *const cPrivilege = "Settings.User.AM.Privileges.UserPriviledges.CanCreateNewColumn";

// Columns 100, 60 and 80 wide: labels 0-100, 105-165 and 170-250 from origin 0, dividers at 102,
// 167 and 252, centres 50, 135 and 210.
Layout threeColumns(long iOrigin = 0)
{
    Layout layout;
    layout.widths = { 100, 60, 80 };
    layout.origin = iOrigin;
    return layout;
}

QList<long> toList(const std::vector<long> &iValues)
{
    return QList<long>(iValues.begin(), iValues.end());
}

// A shown header, 24 pixels high, over a columns model laid out as threeColumns(): "Name",
// "Size" and "Date" (which cannot be hidden), each at least 30 wide.
struct Form
{
    explicit Form(const QString &iBase = Bnd_Utils::Bnd_UniqueConnString(QStringLiteral("TstHdr")))
        : columns(iBase)
    {
        const char *const labels[] = { "Name", "Size", "Date" };
        for (int i = 0; i < 3; ++i) {
            Kiv_ColumnsModel::Column column;
            column.label = QLatin1String(labels[i]);
            column.width = threeColumns().widths[size_t(i)];
            column.minWidth = 30;
            column.canHide = i != 2;
            columns.addColumn(column);
        }
        columns.setSortCallback(
            [this](long iColumn, bool iUp) { sorts << qMakePair(iColumn, iUp); });
        columns.setAddColumnCallback([this](long iPosition) { added << iPosition; });
        QVERIFY(columns.publish());
        header->setColumnBaseConnectionName(iBase);
        header->makeConnections(Bnd_ConnectionEnvironmentPtr());
        header->setGeometry(0, 0, 400, 24);
        window.resize(400, 24);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
    }
    long beingDragged() const
    {
        const QString name = columns.baseName() + QLatin1String(".columnBeingDragged");
        return Bnd_ConnectionToModel<Bndt_SimpleValue<long>>(name).getValue(-99);
    }
    bool isSorted(long iColumn) const
    {
        const QString name = columns.baseName() + QLatin1String(".isSorted");
        return Bnd_ConnectionToModel<Bndt_Array<bool>>(name).at(iColumn);
    }
    QAction *menuItem(const QPoint &iPos, const QVariant &iData)
    {
        menu = header->buildContextMenu(iPos);
        return menu->findAction(iData);
    }

    Kiv_ColumnsModel columns;
    QList<QPair<long, bool>> sorts;
    QList<long> added;
    QWidget window;
    Kiv_Header *header = new Kiv_Header(&window, QStringLiteral("header"));
    std::unique_ptr<Kiv_PopupMenu> menu;
};

} // namespace

class tst_Header : public QObject
{
    Q_OBJECT

private slots:
    void hitTesting_data();
    void hitTesting();
    void offHeader_data();
    void offHeader();
    void targetIndex_data();
    void targetIndex();

    void dividerDrag_data();
    void dividerDrag();
    void columnDrag();
    void clickSorts_data();
    void clickSorts();
    void hideAndShow_data();
    void hideAndShow();
    void newColumn_data();
    void newColumn();
    void addedItems();
};

void tst_Header::hitTesting_data()
{
    QTest::addColumn<long>("origin");
    QTest::addColumn<long>("x");
    QTest::addColumn<long>("column");
    QTest::addColumn<long>("divider");
    QTest::newRow("label start is outside") << 0L << 0L << -1L << -1L;
    QTest::newRow("3 pixels before a divider") << 0L << 99L << 0L << -1L;
    QTest::newRow("2 pixels before a divider") << 0L << 100L << -1L << 0L;
    QTest::newRow("on a divider") << 0L << 102L << -1L << 0L;
    QTest::newRow("2 pixels after a divider") << 0L << 104L << -1L << 0L;
    QTest::newRow("3 pixels after a divider") << 0L << 105L << -1L << -1L;
    QTest::newRow("second column") << 0L << 106L << 1L << -1L;
    QTest::newRow("last divider") << 0L << 253L << -1L << 2L;
    QTest::newRow("margin 20") << 20L << 122L << -1L << 0L;
    QTest::newRow("scrolled by 30") << -30L << 80L << 1L << -1L;
}

void tst_Header::hitTesting()
{
    QFETCH(long, origin);
    QFETCH(long, x);
    QFETCH(long, column);
    QFETCH(long, divider);
    const Layout layout = threeColumns(origin);
    QCOMPARE(columnIndexForPos(layout, x), column);
    QCOMPARE(dividerIndexForPos(dividerPositions(layout), x), divider);
}

void tst_Header::offHeader_data()
{
    // The pointer of a drag that started at x 102, in a header 400 x 24 (right 399, bottom 23):
    // a divider drag of a column 30 pixels wide at least, and a column drag with a 24-pixel image.
    QTest::addColumn<long>("startWidth");
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<long>("width");
    QTest::addColumn<bool>("cancel");
    QTest::newRow("wider") << 100L << QPoint(140, 10) << 138L << false;
    QTest::newRow("below the minimum") << 100L << QPoint(20, 10) << 30L << false;
    QTest::newRow("start below the minimum") << 10L << QPoint(112, 10) << 40L << false;
    QTest::newRow("50 above") << 100L << QPoint(140, -50) << 138L << false;
    QTest::newRow("51 above") << 100L << QPoint(140, -51) << 138L << true;
    QTest::newRow("80 above") << 100L << QPoint(140, -80) << 138L << true;
    QTest::newRow("81 above") << 100L << QPoint(140, -81) << 100L << true;
    QTest::newRow("81 above, start below the minimum") << 10L << QPoint(140, -81) << 30L << true;
    QTest::newRow("50 below the image") << 100L << QPoint(140, 74) << 138L << false;
    QTest::newRow("51 below the image") << 100L << QPoint(140, 75) << 138L << true;
    QTest::newRow("80 below") << 100L << QPoint(140, 103) << 138L << true;
    QTest::newRow("81 below") << 100L << QPoint(140, 104) << 100L << true;
    QTest::newRow("150 left") << 100L << QPoint(-150, 10) << 30L << false;
    QTest::newRow("151 left") << 100L << QPoint(-151, 10) << 30L << true;
    QTest::newRow("150 right") << 100L << QPoint(549, 10) << 547L << false;
    QTest::newRow("151 right") << 100L << QPoint(550, 10) << 548L << true;
}

void tst_Header::offHeader()
{
    QFETCH(long, startWidth);
    QFETCH(QPoint, pos);
    QFETCH(long, width);
    QFETCH(bool, cancel);
    QCOMPARE(dividerDragWidth(startWidth, 30, 102, pos, 23), width);
    QCOMPARE(shouldCancelColumnDrag(pos, 399, 24), cancel);
}

void tst_Header::targetIndex_data()
{
    // Drag images are the column plus 3 pixels on each side with a neighbour: 103, 66 and 83.
    QTest::addColumn<long>("current");
    QTest::addColumn<long>("left");
    QTest::addColumn<long>("target");
    QTest::newRow("in place, right edge in a gap") << 0L << 0L << -1L;
    QTest::newRow("right edge short of the next centre") << 0L << 31L << 0L;
    QTest::newRow("right edge on the next centre") << 0L << 32L << 0L;
    QTest::newRow("right edge past the next centre") << 0L << 33L << 1L;
    QTest::newRow("right edge on the last column") << 1L << 180L << 2L;
    QTest::newRow("right edge past the columns") << 1L << 200L << -1L;
    QTest::newRow("left edge short of the previous centre") << 1L << 40L << 0L;
    QTest::newRow("left edge past the previous centre") << 1L << 60L << 1L;
    QTest::newRow("moving right, left edge in a gap") << 0L << 101L << -1L;
    QTest::newRow("from the last, left edge on the first") << 2L << 20L << 0L;
}

void tst_Header::targetIndex()
{
    QFETCH(long, current);
    QFETCH(long, left);
    QFETCH(long, target);
    const Layout layout = threeColumns();
    const long right = left + dragOverlayWidth(layout, current);
    QCOMPARE(computeIndexForDraggingColumn(layout, current, left, right), target);
}

void tst_Header::dividerDrag_data()
{
    QTest::addColumn<QPoint>("press");
    QTest::addColumn<QPoint>("release");
    QTest::addColumn<long>("column");
    QTest::addColumn<long>("width");
    QTest::newRow("follows the pointer") << QPoint(102, 10) << QPoint(132, 10) << 0L << 130L;
    QTest::newRow("grabbed 2 pixels off") << QPoint(100, 10) << QPoint(130, 10) << 0L << 130L;
    QTest::newRow("stops at the minimum") << QPoint(102, 10) << QPoint(20, 10) << 0L << 30L;
    QTest::newRow("undone far below") << QPoint(102, 10) << QPoint(132, 104) << 0L << 100L;
    QTest::newRow("second column") << QPoint(167, 10) << QPoint(147, 10) << 1L << 40L;
}

void tst_Header::dividerDrag()
{
    QFETCH(QPoint, press);
    QFETCH(QPoint, release);
    QFETCH(long, column);
    QFETCH(long, width);
    Form form;
    QTest::mousePress(form.header, Qt::LeftButton, {}, press);
    QTest::mouseMove(form.header, QPoint(release.x(), 10));
    QTest::mouseMove(form.header, release);
    QTest::mouseRelease(form.header, Qt::LeftButton, {}, release);
    QCOMPARE(form.columns.width(column), width);
    QCOMPARE(toList(form.columns.visibleColumns()), (QList<long> { 0, 1, 2 }));
    QVERIFY(form.sorts.isEmpty());
}

void tst_Header::columnDrag()
{
    Form form;
    QList<QPoint> sizes;
    QList<long> imageColumns;
    QPointer<Kiv_TransparentOverlay> image;
    form.header->setCreateColumnDragOverlayCB([&](QPoint iSize, long iColumn) {
        sizes << iSize;
        imageColumns << iColumn;
        QPixmap pixmap(iSize.x(), iSize.y());
        pixmap.fill(Qt::gray);
        image = new Kiv_TransparentOverlay(pixmap, 200);
        return image.data();
    });
    const auto order = [&] {
        return toList(form.columns.visibleColumns());
    };
    const int distance = QApplication::startDragDistance();

    QTest::mousePress(form.header, Qt::LeftButton, {}, QPoint(50, 10));
    QTest::mouseMove(form.header, QPoint(50 + distance, 10));
    QCOMPARE(form.beingDragged(), -1L);
    QVERIFY(sizes.isEmpty());

    // Grabbed in the middle of "Name": its image is 100 + 3 wide, as high as the header.
    QTest::mouseMove(form.header, QPoint(80, 10));
    QCOMPARE(sizes, (QList<QPoint> { QPoint(103, 24) }));
    QCOMPARE(imageColumns, (QList<long> { 0 }));
    QVERIFY(image && image->isVisible());
    QCOMPARE(form.beingDragged(), 0L);
    QCOMPARE(order(), (QList<long> { 0, 1, 2 }));

    QTest::mouseMove(form.header, QPoint(90, 10)); // right edge past the centre of "Size"
    QCOMPARE(order(), (QList<long> { 1, 0, 2 }));
    QCOMPARE(form.beingDragged(), 1L);

    QTest::mouseMove(form.header, QPoint(-151, 10)); // cancelled: back home, image hidden
    QCOMPARE(order(), (QList<long> { 0, 1, 2 }));
    QCOMPARE(form.beingDragged(), 0L);
    QVERIFY(image && !image->isVisible());

    QTest::mouseMove(form.header, QPoint(-150, 10)); // back in range: the drag resumes
    QVERIFY(image && image->isVisible());
    QTest::mouseMove(form.header, QPoint(90, 10));
    QCOMPARE(order(), (QList<long> { 1, 0, 2 }));

    QTest::mouseRelease(form.header, Qt::LeftButton, {}, QPoint(90, 10));
    QCOMPARE(order(), (QList<long> { 1, 0, 2 }));
    QCOMPARE(form.beingDragged(), -1L);
    QVERIFY(form.sorts.isEmpty()); // a drag is no click
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(image.isNull());
}

void tst_Header::clickSorts_data()
{
    QTest::addColumn<QList<int>>("clicks"); // x of each click
    QTest::addColumn<long>("column"); // the sorted column, -1 for none
    QTest::addColumn<bool>("ascending");
    QTest::addColumn<int>("sorts");
    QTest::newRow("one click") << QList<int> { 130 } << 1L << true << 1;
    QTest::newRow("again flips") << QList<int> { 130, 130 } << 1L << false << 2;
    QTest::newRow("another column") << QList<int> { 130, 130, 50 } << 0L << true << 3;
    QTest::newRow("on a divider") << QList<int> { 102 } << -1L << true << 0;
    QTest::newRow("past the columns") << QList<int> { 300 } << -1L << true << 0;
}

void tst_Header::clickSorts()
{
    QFETCH(QList<int>, clicks);
    QFETCH(long, column);
    QFETCH(bool, ascending);
    QFETCH(int, sorts);
    Form form;
    for (int x : clicks)
        QTest::mouseClick(form.header, Qt::LeftButton, {}, QPoint(x, 10));
    QCOMPARE(form.sorts.size(), sorts);
    if (column >= 0)
        QCOMPARE(form.sorts.last(), qMakePair(column, ascending));
    for (long c = 0; c < 3; ++c)
        QCOMPARE(form.isSorted(c), c == column);
    QVERIFY(!QApplication::overrideCursor());
}

void tst_Header::hideAndShow_data()
{
    QTest::addColumn<long>("hiddenFirst"); // column the host hides first, -1 for none
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<bool>("hideEnabled");
    QTest::addColumn<QVariant>("item"); // the item run at pos
    QTest::addColumn<QList<long>>("visible");
    const QVariant hide(QStringLiteral("HideColumn"));
    QTest::newRow("hide") << -1L << QPoint(130, 10) << true << hide << QList<long> { 0, 2 };
    QTest::newRow("cannot hide") << -1L << QPoint(200, 10) << false << hide
                                 << QList<long> { 0, 1, 2 };
    QTest::newRow("hide in a gap")
        << -1L << QPoint(103, 10) << false << hide << QList<long> { 0, 1, 2 };
    QTest::newRow("hide off the columns")
        << -1L << QPoint(300, 10) << false << hide << QList<long> { 0, 1, 2 };
    QTest::newRow("show at the end")
        << 1L << QPoint(300, 10) << false << QVariant(qlonglong(1)) << QList<long> { 0, 2, 1 };
    QTest::newRow("show before the pointer")
        << 1L << QPoint(50, 10) << true << QVariant(qlonglong(1)) << QList<long> { 1, 0, 2 };
}

void tst_Header::hideAndShow()
{
    QFETCH(long, hiddenFirst);
    QFETCH(QPoint, pos);
    QFETCH(bool, hideEnabled);
    QFETCH(QVariant, item);
    QFETCH(QList<long>, visible);
    Form form;
    if (hiddenFirst >= 0)
        QVERIFY(form.columns.hideColumn(hiddenFirst));
    QAction *hide = form.menuItem(pos, QStringLiteral("HideColumn"));
    QVERIFY(hide);
    QCOMPARE(hide->text(), QStringLiteral("Hide this Column"));
    QCOMPARE(hide->isEnabled(), hideEnabled);
    // One "Show" item per hidden column, carrying its number.
    QAction *show = form.menu->findAction(QVariant(qlonglong(1)));
    QCOMPARE(bool(show), hiddenFirst == 1);
    if (show)
        QCOMPARE(show->text(), QStringLiteral("Show Size"));

    form.header->runContextMenuItem(item, pos);
    QCOMPARE(toList(form.columns.visibleColumns()), visible);
}

void tst_Header::newColumn_data()
{
    QTest::addColumn<bool>("nested"); // a columns model below another name has no action
    QTest::addColumn<QVariant>("privilege"); // invalid: no such model
    QTest::addColumn<bool>("offered");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("no privilege") << false << QVariant() << true << false;
    QTest::newRow("privileged") << false << QVariant(true) << true << true;
    QTest::newRow("not privileged") << false << QVariant(false) << true << false;
    QTest::newRow("privileged as text")
        << false << QVariant(QStringLiteral("true")) << true << true;
    QTest::newRow("other text") << false << QVariant(QStringLiteral("True")) << true << false;
    QTest::newRow("nested") << true << QVariant(true) << false << false;
}

void tst_Header::newColumn()
{
    QFETCH(bool, nested);
    QFETCH(QVariant, privilege);
    QFETCH(bool, offered);
    QFETCH(bool, enabled);
    std::unique_ptr<Bnd_ModelBase> setting;
    if (privilege.typeId() == QMetaType::Bool)
        setting = std::make_unique<Bnde_SimpleValue<bool>>(cPrivilege, privilege.toBool());
    else if (privilege.isValid())
        setting = std::make_unique<Bnde_SimpleValue<QString>>(cPrivilege, privilege.toString());
    QVERIFY(!setting || setting->Publish());
    const QString base = Bnd_Utils::Bnd_UniqueConnString(QStringLiteral("TstHdr"));
    Form form(nested ? base + QLatin1String(".Columns") : base);

    QAction *add = form.menuItem(QPoint(300, 10), QStringLiteral("NewColumn"));
    QCOMPARE(bool(add), offered);
    if (!add)
        return;
    QCOMPARE(add->text(), QStringLiteral("New Column"));
    QCOMPARE(add->isEnabled(), enabled);
    if (!enabled)
        return;
    // After the last column off the columns, else at the column under the pointer.
    form.header->runContextMenuItem(add->data(), QPoint(300, 10));
    form.header->runContextMenuItem(add->data(), QPoint(130, 10));
    QCOMPARE(form.added, (QList<long> { 3, 1 }));
}

void tst_Header::addedItems()
{
    Form form;
    int chosen = 0;
    int fitted = 0;
    QList<long> exported;
    const QString chooserName = Bnd_Utils::Bnd_UniqueConnString(QStringLiteral("TstHdrChooser"));
    const QString fitName = Bnd_Utils::Bnd_UniqueConnString(QStringLiteral("TstHdrFit"));
    const QString exportName = Bnd_Utils::Bnd_UniqueConnString(QStringLiteral("TstHdrExport"));
    Bnde_ActionModelWithType<Bndt_Action<void()>> chooser(chooserName, [&] { ++chosen; });
    Bnde_ActionModelWithType<Bndt_Action<void()>> fit(fitName, [&] { ++fitted; });
    Bnde_ActionModelWithType<Bndt_Action<void(long)>> exporter(exportName,
                                                               [&](long c) { exported << c; });
    QVERIFY(chooser.Publish() && fit.Publish() && exporter.Publish());
    form.header->setColumnSelectionConnectionSpec(chooserName);
    form.header->addContextMenuItem(QStringLiteral("Fit"), fitName);
    form.header->addContextMenuItem(QStringLiteral("Export"), exportName, QStringLiteral("column"));
    form.header->addContextMenuItem(QStringLiteral("Missing"),
                                    QStringLiteral("TstHdrNoSuchAction"));

    const QPoint onSize(130, 10);
    const QString fitKey = QLatin1String("action0:") + fitName;
    const QString exportKey = QLatin1String("action1:") + exportName;
    QVERIFY(form.menuItem(onSize, QStringLiteral("SelectColumn")));
    QVERIFY(form.menu->findAction(fitKey)->isEnabled());
    QVERIFY(form.menu->findAction(exportKey)->isEnabled());
    QVERIFY(!form.menu->findAction(QStringLiteral("action0:TstHdrNoSuchAction"))->isEnabled());
    QVERIFY(!form.menuItem(QPoint(300, 10), exportKey)->isEnabled()); // no column there

    form.header->runContextMenuItem(QStringLiteral("SelectColumn"), onSize);
    form.header->runContextMenuItem(fitKey, onSize);
    form.header->runContextMenuItem(exportKey, onSize);
    QCOMPARE(chosen, 1);
    QCOMPARE(fitted, 1);
    QCOMPARE(exported, (QList<long> { 1 }));

    form.header->clearContextMenuItems();
    QVERIFY(!form.menuItem(onSize, fitKey));
}

QTEST_MAIN(tst_Header)
#include "tst_header.moc"
