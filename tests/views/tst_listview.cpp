// The list view over a real published array: selection by mouse and keys, model changes while
// rows are selected, painting only what shows, drags and their threshold, scripts per row.

#include "Bnd_ConnectionToModel.h"
#include "Bnde_Array.h"
#include "Bnde_SimpleValue.h"
#include "Bndt_Root_Notifications.h"
#include "Kiv_BridgeQScrollArea.h"
#include "Kiv_KeymapMgr.h"
#include "Kiv_LineEdit.h"
#include "Kiv_ListView.h"
#include "Kiv_StringView.h"

#include <QMimeData>
#include <QScrollBar>
#include <QtTest>

namespace {
QString uniqueName(const char *iBase)
{
    static int counter = 0;
    return QStringLiteral("LV%1.%2").arg(++counter).arg(QLatin1String(iBase));
}

// The row view: the name of the row ("names[$Row]"), a drag handle everywhere, remembering the
// rows it drew.
struct RowProbe : Kiv_StringView
{
    explicit RowProbe(const QString &iArray)
    {
        SetConnectionID(iArray + QStringLiteral("[$Row]"));
        setSize(QSize(200, 20));
        setCanDrag(true);
    }
    void drawContents(QPainter *iPainter, const QRect &iRect) override
    {
        drawn << text();
        Kiv_StringView::drawContents(iPainter, iRect);
    }
    std::unique_ptr<Kiv_ViewInterface> clone() const override
    {
        return std::unique_ptr<Kiv_ViewInterface>(new RowProbe(*this));
    }
    QDomElement getDragData(QPoint, QDomDocument &ioDocument, QPixmap &oPixmap) override
    {
        oPixmap = QPixmap(50, 20);
        oPixmap.fill(Qt::red);
        QDomElement clip = ioDocument.createElement(QStringLiteral("Clip"));
        clip.setAttribute(QStringLiteral("name"), text());
        return clip;
    }
    QStringList drawn;
};

// A list whose drags are recorded instead of run.
struct DragRecordingList : Kiv_ListView
{
    void execDrag(QMimeData *iData, const QPixmap &iImage, Qt::DropAction) override
    {
        texts << iData->text();
        image = iImage;
        delete iData;
    }
    QStringList texts;
    QPixmap image;
};

// A list of `iRows` names shown in a 300x240 viewport (twelve rows of 20 pixels).
struct ListFixture
{
    explicit ListFixture(long iRows, Kiv_ListView *iList = new Kiv_ListView)
        : names(uniqueName("names"))
        , list(iList)
        , row(new RowProbe(names.GetConnectionName()))
    {
        std::vector<QString> values;
        for (long i = 0; i < iRows; ++i)
            values.push_back(QStringLiteral("clip %1").arg(i));
        names.setValues(std::move(values));
        names.Publish();
        list->SetRowView(row);
        list->SetListConnectionName(names.GetConnectionName());
        area.setFrameShape(QFrame::NoFrame);
        area.setChild(list);
        area.resize(300, 240);
        area.show();
        area.makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
    }
    QWidget *port() { return area.viewport(); }
    // The middle of a row, in viewport coordinates.
    QPoint at(long iRow) { return QPoint(40, int(iRow * 20 + 10) - area.contentsOffset().y()); }
    QString selection() const
    {
        QStringList rows;
        for (long r : list->getSelectedList())
            rows << QString::number(r);
        return rows.join(QLatin1Char(','));
    }

    Bnde_Array<QString> names;
    std::unique_ptr<Kiv_BridgeQScrollArea> owned = std::make_unique<Kiv_BridgeQScrollArea>();
    Kiv_BridgeQScrollArea &area = *owned;
    Kiv_ListView *list;
    RowProbe *row;
};
} // namespace

class tst_ListView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void selectsByMouseAndKeys_data();
    void selectsByMouseAndKeys();
    void modelChangesKeepTheSelectionInBounds();
    void paintsOnlyTheRowsThatShow();
    void clickOnASelectedRowSelectsItAloneAtRelease();
    void dragStartsAtTheThreshold_data();
    void dragStartsAtTheThreshold();
    void dragImageFolds_data();
    void dragImageFolds();
    void scriptsRunForTheirRow();
    void selectionListenerMayDestroyTheList_data();
    void selectionListenerMayDestroyTheList();
    void selectionSetFromOutside();
    void uiNamesAddressRows();
};

void tst_ListView::initTestCase()
{
    // A key of the window's own: the list leaves it to the window.
    Kiv_KeymapMgr &keymap = *Kiv_KeymapMgr::getInstance();
    keymap.setupCurrentLang(-1);
    keymap.add(QKeySequence(Qt::Key_Home), QStringLiteral("App.first"), QString(), QString(),
               QStringLiteral("MainWindow"), QString(), false);
}

// Steps: "c3" click row 3, "C3" Ctrl-click, "S3" Shift-click, "r3" right click, "A" Ctrl+A, "U" "D"
// "E" "H" "P" "N" the keys Up, Down, End, Home, Page Up, Page Down.
void tst_ListView::selectsByMouseAndKeys_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<long>("anchor");
    const auto row
        = [](const char *iTag, int iMode, const char *iSteps, const char *iSelected, long iAnchor) {
              QTest::newRow(iTag) << iMode << QString(iSteps) << QString(iSelected) << iAnchor;
          };
    row("a new list selects nothing", Kiv_ListView::SelectNone, "c2 D A", "", -1L);
    row("single", Kiv_ListView::SelectSingle, "c2 c5", "5", 5L);
    row("single ignores Ctrl+A", Kiv_ListView::SelectSingle, "c2 A", "2", 2L);
    row("click below the rows clears", Kiv_ListView::SelectSingle, "c2 c11", "", -1L);
    row("multi toggles", Kiv_ListView::SelectMulti, "c2 C5 C2", "5", -1L);
    row("multi ignores Shift", Kiv_ListView::SelectMulti, "c2 S5", "5", 5L);
    row("extend down", Kiv_ListView::SelectExtended, "c2 S5", "2,3,4,5", 2L);
    row("extend keeps the anchor", Kiv_ListView::SelectExtended, "c5 S2 S7", "5,6,7", 5L);
    row("extend without an anchor", Kiv_ListView::SelectExtended, "c2 C2 S5", "", -1L);
    row("Ctrl+A selects all", Kiv_ListView::SelectExtended, "A", "0,1,2,3,4,5,6,7,8,9", -1L);
    row("Ctrl+A again selects none", Kiv_ListView::SelectExtended, "c3 A A", "", 3L);
    row("Up on the first row wraps", Kiv_ListView::SelectSingle, "c0 U", "9", 9L);
    row("Down on the last row wraps", Kiv_ListView::SelectSingle, "c9 D", "0", 0L);
    row("Down with nothing selected", Kiv_ListView::SelectSingle, "D", "0", 0L);
    row("End", Kiv_ListView::SelectSingle, "c3 E", "9", 9L);
    row("a window key is the window's", Kiv_ListView::SelectSingle, "c3 H", "3", 3L);
    row("Page Down stops at the end", Kiv_ListView::SelectSingle, "c3 N", "9", 9L);
    row("Page Up stops at the top", Kiv_ListView::SelectSingle, "c8 P", "0", 0L);
    row("right click on a selected row keeps all", Kiv_ListView::SelectExtended, "c2 S4 r3",
        "2,3,4", 2L);
    row("right click elsewhere selects that row", Kiv_ListView::SelectExtended, "c2 S4 r6", "6",
        6L);
    row("right click below the rows clears", Kiv_ListView::SelectExtended, "c2 S4 r11", "", -1L);
}

void tst_ListView::selectsByMouseAndKeys()
{
    QFETCH(int, mode);
    QFETCH(QString, steps);
    QFETCH(QString, selected);
    QFETCH(long, anchor);
    ListFixture f(10);
    f.list->setSelectionMode(Kiv_ListView::SelectionMode(mode));
    const QMap<QChar, Qt::Key> keys { { 'U', Qt::Key_Up },     { 'D', Qt::Key_Down },
                                      { 'E', Qt::Key_End },    { 'H', Qt::Key_Home },
                                      { 'P', Qt::Key_PageUp }, { 'N', Qt::Key_PageDown } };
    for (const QString &step : steps.split(QLatin1Char(' '))) {
        const QChar kind = step.at(0);
        const Qt::KeyboardModifiers modifiers = kind == 'C' ? Qt::ControlModifier
            : kind == 'S'                                   ? Qt::ShiftModifier
                                                            : Qt::NoModifier;
        if (kind == 'c' || kind == 'C' || kind == 'S')
            QTest::mouseClick(f.port(), Qt::LeftButton, modifiers, f.at(step.mid(1).toLong()));
        else if (kind == 'r')
            QTest::mouseClick(f.port(), Qt::RightButton, Qt::NoModifier,
                              f.at(step.mid(1).toLong()));
        else if (kind == 'A')
            QTest::keyClick(f.port(), Qt::Key_A, Qt::ControlModifier);
        else
            QTest::keyClick(f.port(), keys.value(kind));
    }
    QCOMPARE(f.selection(), selected);
    Bnd_ConnectionToModel<Bndt_SimpleValue<long>> last(f.names.GetConnectionName()
                                                       + QStringLiteral(":LastSelection"));
    QCOMPARE(last.getValue(-2), anchor);
}

void tst_ListView::modelChangesKeepTheSelectionInBounds()
{
    ListFixture f(10);
    const QString name = f.names.GetConnectionName();
    f.list->setSelectionMode(Kiv_ListView::SelectExtended);
    f.list->SetSelected(5);
    f.list->SetSelected(9, false, Qt::ShiftModifier);
    Bnd_ConnectionToModel<Bndt_Array<bool>> isSelected(name + QStringLiteral(".isSelected"));
    Bnd_ConnectionToModel<Bndt_SimpleValue<SortedValueList<long>>> published(
        name + QStringLiteral(":SelectionList"));
    QVERIFY(isSelected.at(7) && !isSelected.at(4));

    f.names.remove(7, 3); // the selected rows 7 to 9 are gone
    QCOMPARE(f.selection(), QString("5,6"));
    QCOMPARE(f.list->GetNumItems(), 7L);
    QCOMPARE(isSelected.size(), 7L);
    f.names.insert(0, QStringLiteral("new")); // rows are indices: the selection stays
    f.names.set(5, QStringLiteral("renamed"));
    QCOMPARE(f.selection(), QString("5,6"));
    QCOMPARE(published.getValue().size(), 2L);
    QCOMPARE(f.list->GetNumItems(), 8L);

    f.names.UnPublish(); // a reconnection starts from nothing
    QCOMPARE(f.selection(), QString());
    QCOMPARE(f.list->GetNumItems(), 0L);
}

void tst_ListView::paintsOnlyTheRowsThatShow()
{
    ListFixture f(100000);
    f.area.grab();
    QVERIFY2(f.row->drawn.size() <= 13, qPrintable(f.row->drawn.join(", ")));
    QCOMPARE(f.row->drawn.value(0), QString("clip 0"));
    f.row->drawn.clear();
    f.area.verticalScrollBar()->setValue(f.area.verticalScrollBar()->maximum());
    f.area.grab();
    QVERIFY(f.row->drawn.size() <= 13);
    QCOMPARE(f.row->drawn.last(), QString("clip 99999"));

    // Selecting everything repaints what shows, not the model.
    f.list->setSelectionMode(Kiv_ListView::SelectExtended);
    f.row->drawn.clear();
    QTest::keyClick(f.port(), Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(f.list->GetRowSelectionListSize(), 100000L);
    f.area.grab();
    QVERIFY(f.row->drawn.size() <= 13);
}

void tst_ListView::clickOnASelectedRowSelectsItAloneAtRelease()
{
    ListFixture f(10);
    f.list->setSelectionMode(Kiv_ListView::SelectExtended);
    f.list->SetSelected(2);
    f.list->SetSelected(5, false, Qt::ShiftModifier);
    QTest::mousePress(f.port(), Qt::LeftButton, Qt::NoModifier, f.at(3));
    QCOMPARE(f.selection(), QString("2,3,4,5")); // might be the start of a drag of all four
    QTest::mouseRelease(f.port(), Qt::LeftButton, Qt::NoModifier, f.at(3));
    QCOMPARE(f.selection(), QString("3"));
}

void tst_ListView::dragStartsAtTheThreshold_data()
{
    QTest::addColumn<QPoint>("move");
    QTest::addColumn<int>("drags");
    QTest::newRow("10 right") << QPoint(10, 0) << 0;
    QTest::newRow("11 right") << QPoint(11, 0) << 1;
    QTest::newRow("10 down, 10 left") << QPoint(-10, 10) << 0;
    QTest::newRow("11 up") << QPoint(0, -11) << 1;
}

void tst_ListView::dragStartsAtTheThreshold()
{
    QFETCH(QPoint, move);
    QFETCH(int, drags);
    auto *list = new DragRecordingList;
    ListFixture f(10, list);
    f.list->setSelectionMode(Kiv_ListView::SelectExtended);
    f.list->SetSelected(1);
    f.list->SetSelected(3, false, Qt::ShiftModifier);
    QTest::mousePress(f.port(), Qt::LeftButton, Qt::NoModifier, f.at(2));
    QTest::mouseMove(f.port(), f.at(2) + move);
    QCOMPARE(list->texts.size(), drags);
    QTest::mouseRelease(f.port(), Qt::LeftButton, Qt::NoModifier, f.at(2) + move);
    if (drags) {
        QCOMPARE(f.selection(), QString("1,2,3")); // a drag leaves the selection alone
        QDomDocument document;
        QVERIFY(document.setContent(list->texts.first()));
        QCOMPARE(document.documentElement().tagName(), QString("mobIDDragObjectList"));
        const QDomNodeList clips = document.documentElement().childNodes();
        QCOMPARE(clips.size(), 3);
        QCOMPARE(clips.at(2).toElement().attribute("name"), QString("clip 3"));
        QCOMPARE(clips.at(2).toElement().attribute("row"), QString("3"));
        QCOMPARE(list->image.height(), 60);
    } else {
        QCOMPARE(f.selection(), QString("2"));
    }
}

void tst_ListView::dragImageFolds_data()
{
    QTest::addColumn<int>("items");
    QTest::addColumn<int>("stacked"); // images of 20 pixels stacked before the text strip
    QTest::addColumn<bool>("strip");
    QTest::newRow("three") << 3 << 3 << false;
    QTest::newRow("exactly ten") << 10 << 10 << false;
    QTest::newRow("eleven") << 11 << 9 << true;
    QTest::newRow("twelve") << 12 << 9 << true;
}

void tst_ListView::dragImageFolds()
{
    QFETCH(int, items);
    QFETCH(int, stacked);
    QFETCH(bool, strip);
    QPixmap item(50, 20);
    item.fill(Qt::red);
    QPixmap image;
    for (int k = 1; k <= items; ++k)
        Kiv_ListView::foldDragImage(image, item, k, items);
    QFont font = QApplication::font();
    font.setPointSize(12);
    const int stripHeight = strip ? QFontMetrics(font).height() : 0;
    QCOMPARE(image.height(), stacked * 20 + stripHeight);
    // The strip says how many rows are not shown: 12 rows show 9 and "... (+3)".
    const int textWidth
        = QFontMetrics(font).horizontalAdvance(QStringLiteral("... (+%1)").arg(items - 9)) + 6;
    QCOMPARE(image.width(), strip ? std::max(50, textWidth) : 50);
}

void tst_ListView::scriptsRunForTheirRow()
{
    ListFixture f(10);
    Bnde_SimpleValue<QString> opened(uniqueName("opened"));
    Bnde_SimpleValue<QString> picked(uniqueName("picked"));
    opened.Publish();
    picked.Publish();
    const QString rowName = f.names.GetConnectionName() + QStringLiteral("[$Row]");
    f.list->setSelectionMode(Kiv_ListView::SelectSingle);
    f.list->setEnterActionString(opened.GetConnectionName() + QStringLiteral(" = ") + rowName);
    f.list->setSelectionActionString(picked.GetConnectionName() + QStringLiteral(" = ") + rowName);
    f.area.makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
    QTest::mouseClick(f.port(), Qt::LeftButton, Qt::NoModifier, f.at(6));
    QCOMPARE(picked.getValue(), QString("clip 6"));
    f.area.grab(); // painting moves the row view over every row
    QTest::keyClick(f.port(), Qt::Key_Return);
    QCOMPARE(opened.getValue(), QString("clip 6"));
}

// A listener of one of the published selection models closes the list's window when it hears
// of a change; whatever made the change must not touch the list afterwards, nor run its
// selection script (which renames the row it selected).
void tst_ListView::selectionListenerMayDestroyTheList_data()
{
    QTest::addColumn<QString>("model"); // suffix of the list's name
    QTest::addColumn<QString>("change");
    QTest::addColumn<bool>("closes");
    for (const char *model : { ":SelectionList", ".isSelected[3]" })
        for (const char *change : { "Ctrl-click", "Ctrl+A", "shrink" })
            QTest::addRow("%s on %s", model, change) << QString(model) << QString(change) << true;
    QTest::newRow(":LastSelection on Ctrl-click") << ":LastSelection"
                                                  << "Ctrl-click" << true;
    QTest::newRow(":LastSelection on Ctrl+A") << ":LastSelection"
                                              << "Ctrl+A" << false;
}

void tst_ListView::selectionListenerMayDestroyTheList()
{
    QFETCH(QString, model);
    QFETCH(QString, change);
    QFETCH(bool, closes);
    ListFixture f(10);
    f.list->setSelectionMode(Kiv_ListView::SelectExtended);
    f.list->setSelectionActionString(f.names.GetConnectionName() + "[$Row] = \"picked\"");
    f.area.makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
    f.list->SetSelected(3);
    f.list->SetSelected(5, false, Qt::ShiftModifier);
    f.names.set(3, "clip 3"); // the script renamed it
    Kiv_ListView *list = f.list;
    Bnd_ListenerBase closer(f.names.GetConnectionName() + model);
    QVERIFY(closer.isConnectedToModel());
    closer.setReceiveMessageCB([&](const Bnd_MessageInterface &iMsg) {
        if (!iMsg.is<Bndt_Root_Notifications::MsgConnectedChanged>())
            f.owned.reset();
    });
    long acted = -1; // the row the script would rename
    if (change == "Ctrl-click")
        list->SetSelected(acted = 4, false, Qt::ControlModifier);
    else if (change == "Ctrl+A")
        list->SetSelected(acted = 0, true);
    else
        f.names.remove(2, 8);
    QCOMPARE(!f.owned, closes);
    if (acted >= 0)
        QCOMPARE(f.names.at(acted) == "picked", !closes);
}

void tst_ListView::selectionSetFromOutside()
{
    ListFixture f(10);
    f.list->setSelectionMode(Kiv_ListView::SelectExtended);
    const QString name = f.names.GetConnectionName();
    Bnd_ConnectionToModel<Bndt_SimpleValue<SortedValueList<long>>> selection(
        name + QStringLiteral(":SelectionList"));
    Bnd_ConnectionToModel<Bndt_SimpleValue<bool>> row2(name + QStringLiteral(".isSelected[2]"));
    int heard = 0;
    row2.setReceiveMessageCB([&](const Bnd_MessageInterface &iMsg) {
        heard += iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>();
    });
    QCOMPARE(selection.setValue({ 1, 2, 50 }), int(Bnd_Status::Ok));
    QCOMPARE(f.selection(), QString("1,2")); // rows that do not exist are dropped
    QVERIFY(row2.getValue() && heard == 1);
}

void tst_ListView::uiNamesAddressRows()
{
    ListFixture f(10);
    const QPoint inRow3(40, 3 * 20 + 10);
    QCOMPARE(f.list->findUiName(inRow3), QString("ListView.RowView(3)"));
    f.area.grab();
    QPoint where;
    QVERIFY(f.list->findItem(QStringLiteral("ListView.RowView(3)"), &where));
    QCOMPARE(where, QRect(0, 60, 200, 20).center());
    QVERIFY(!f.list->findItem(QStringLiteral("ListView.RowView(10)"), &where));
}

QTEST_MAIN(tst_ListView)
#include "tst_listview.moc"
