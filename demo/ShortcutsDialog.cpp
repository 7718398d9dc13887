#include "ShortcutsDialog.h"

#include "Kiv_KeyEdit.h"
#include "Kiv_KeymapMgr.h"
#include "Kiv_MenuBar.h"
#include "Mnu_Segment.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSaveFile>
#include <QSettings>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {
const char *const cMovedKeys = "KeyboardShortcuts/movedKeys";

QString contextOf(const QString &iTableKey)
{
    return iTableKey.section(QLatin1String("::"), 0, 0);
}
QString keyOf(const QString &iTableKey)
{
    return iTableKey.section(QLatin1String("::"), 1);
}
} // namespace

ShortcutsDialog::ShortcutsDialog(QWidget *iParent, Kiv_MenuBar *iMenuBar,
                                 const QString &iCustomFile)
    : QDialog(iParent)
    , mMenuBar(iMenuBar)
    , mCustomFile(iCustomFile)
    , mTable(new QTableWidget(0, 3, this))
    , mKey(new Kiv_KeyEdit(this, QStringLiteral("newKey")))
    , mWarning(new QLabel(this))
    , mAssign(new QPushButton(tr("Assign"), this))
{
    setWindowTitle(tr("Keyboard Shortcuts"));
    resize(620, 480);
    mTable->setHorizontalHeaderLabels({ tr("Context"), tr("Key"), tr("Does") });
    mTable->horizontalHeader()->setStretchLastSection(true);
    mTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    mTable->setSelectionMode(QAbstractItemView::SingleSelection);
    mTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    mKey->setPlaceholderText(tr("Press the new key"));
    mWarning->setStyleSheet(QStringLiteral("color: #d08770;"));
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Close, this);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(mTable);
    layout->addWidget(new QLabel(tr("New key for the chosen mapping:"), this));
    layout->addWidget(mKey);
    layout->addWidget(mWarning);
    layout->addWidget(mAssign);
    layout->addWidget(buttons);
    connect(mKey, &QLineEdit::textChanged, this, [this] { keyChanged(); });
    connect(mTable, &QTableWidget::itemSelectionChanged, this, [this] { keyChanged(); });
    connect(mAssign, &QPushButton::clicked, this, [this] { assign(); });
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { save(); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    fill();
    keyChanged();
}

void ShortcutsDialog::loadCustomKeys(const QString &iCustomFile)
{
    Kiv_KeymapMgr &keymap = *Kiv_KeymapMgr::getInstance();
    const int keyboard = keymap.setupCurrentLang(-1);
    const int lang = keymap.loaded(keyboard) ? keyboard : 0;
    if (QFile::exists(iCustomFile))
        keymap.load(iCustomFile, lang);
    const QStringList moved = QSettings().value(QLatin1String(cMovedKeys)).toStringList();
    for (const QString &tableKey : moved)
        if (!keymap.KeyMap(lang).value(tableKey).custom)
            keymap.KeyMap(lang).remove(tableKey);
}

void ShortcutsDialog::fill()
{
    Kiv_KeymapMgr &keymap = *Kiv_KeymapMgr::getInstance();
    const Kiv_KeymapMgr::KeyMapping &table = keymap.KeyMap();
    mTable->setRowCount(int(table.size()));
    int row = 0;
    for (auto it = table.constBegin(); it != table.constEnd(); ++it, ++row) {
        QString does = it->description;
        if (keymap.isMenuAction(*it))
            does = tr("Menu: %1")
                       .arg(keymap.getMenuActionLabel(
                           QKeySequence(keyOf(it.key()), QKeySequence::PortableText), *it));
        const QStringList cells { contextOf(it.key()), keyOf(it.key()), does };
        for (int column = 0; column < 3; ++column) {
            auto *cell = new QTableWidgetItem(cells[column]);
            cell->setData(Qt::UserRole, it.key());
            mTable->setItem(row, column, cell);
        }
    }
    mTable->resizeColumnsToContents();
}

QString ShortcutsDialog::selectedTableKey() const
{
    const QList<QTableWidgetItem *> selected = mTable->selectedItems();
    return selected.isEmpty() ? QString() : selected.first()->data(Qt::UserRole).toString();
}

QString ShortcutsDialog::holderOf(const QString &iKey, const QString &iContext,
                                  Kiv_MenuBar *iMenuBar, const QString &iExceptTableKey)
{
    Kiv_KeymapMgr &keymap = *Kiv_KeymapMgr::getInstance();
    const QString tableKey = iContext + QLatin1String("::") + iKey;
    const auto mapping = keymap.KeyMap().constFind(tableKey);
    if (tableKey != iExceptTableKey && mapping != keymap.KeyMap().constEnd())
        return tr("%1 is already \"%2\" in %3")
            .arg(iKey, mapping->description.isEmpty() ? mapping->action : mapping->description,
                 iContext);
    const QKeySequence sequence(iKey, QKeySequence::PortableText);
    if (iMenuBar && iMenuBar->isDefinedAccelerator(sequence)) {
        Mnu_Segment *item = iMenuBar->getSegmentByAccelerator(sequence);
        return tr("%1 is the accelerator of the menu item \"%2\"")
            .arg(iKey, item ? QString(item->getItemText()).remove(QLatin1Char('&')) : QString());
    }
    return QString();
}

void ShortcutsDialog::keyChanged()
{
    const QString tableKey = selectedTableKey();
    const QString key = mKey->text();
    const auto mapping = Kiv_KeymapMgr::getInstance()->KeyMap().constFind(tableKey);
    QString problem;
    if (!tableKey.isEmpty() && mapping != Kiv_KeymapMgr::getInstance()->KeyMap().constEnd()
        && mapping->action.isEmpty())
        problem = tr("Only mappings to an action can be given another key.");
    else if (!key.isEmpty() && !tableKey.isEmpty())
        problem = holderOf(key, contextOf(tableKey), mMenuBar, tableKey);
    mWarning->setText(problem);
    mAssign->setEnabled(!tableKey.isEmpty() && !key.isEmpty() && problem.isEmpty());
}

void ShortcutsDialog::assign()
{
    const QString tableKey = selectedTableKey();
    Kiv_KeymapMgr &keymap = *Kiv_KeymapMgr::getInstance();
    const Kiv_KeymapMgr::KeyMappingInfo info = keymap.KeyMap().value(tableKey);
    keymap.KeyMap().remove(tableKey);
    if (!info.custom) // a shipped key: remembered, since the keymap file cannot say it moved
        mMovedKeys << tableKey;
    keymap.addOrReplace(QKeySequence(mKey->text(), QKeySequence::PortableText), info.action,
                        info.actionID, info.actionScript, contextOf(tableKey), info.description,
                        true);
    mKey->clear();
    fill();
}

void ShortcutsDialog::save()
{
    QDir().mkpath(QFileInfo(mCustomFile).absolutePath());
    // All or nothing: a crash or a full disk leaves the last saved file as it was.
    QSaveFile file(mCustomFile);
    const QByteArray xml = Kiv_KeymapMgr::getInstance()->customKeyMappingsToXml().toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(xml) != xml.size() || !file.commit()) {
        mWarning->setText(tr("Cannot save %1: %2").arg(mCustomFile, file.errorString()));
        return;
    }
    QSettings settings;
    QStringList moved = settings.value(QLatin1String(cMovedKeys)).toStringList() + mMovedKeys;
    moved.removeDuplicates();
    settings.setValue(QLatin1String(cMovedKeys), moved);
    accept();
}
