#include "DemoProject.h"

#include "Bnd_ConnectionDict.h"
#include "Bnd_ConnectionToModel.h"
#include "Kic_EditMenu.h"
#include "TaskScheduler.h"
#include "TaskSchedulerTask.h"

#include <QCoreApplication>
#include <QDebug>

namespace {
typedef Bnde_ActionModelWithType<Bndt_Action<void()>> Action;
typedef Bnde_ActionModelWithType<Bndt_Action<void(long)>> RowAction;

// Lists a model and, for containers, its children.
void describe(QStringList &oLines, const QString &iName, const Bnd_ModelInterface *iModel)
{
    const auto *model = dynamic_cast<const Bnd_ModelBase *>(iModel);
    QString line
        = iName + QLatin1String("  [") + iModel->getModelType().describe() + QLatin1Char(']');
    if (model && !model->describeValue().isEmpty())
        line += QLatin1String(" = ") + model->describeValue();
    oLines << line;
    if (const auto *container = dynamic_cast<const Bnde_Container *>(iModel))
        for (const QString &child : container->childNames())
            describe(oLines, iName + QLatin1Char('.') + child, container->child(child));
}
} // namespace

DemoProject::DemoProject()
    : mName("Project.Name", "Harbour Documentary")
    , mClips("Project.Clips")
    , mSelection("Project.Selection", 0)
    , mSelectedName("Project.SelectedName")
    , mSelectedDuration("Project.SelectedDuration", 0)
    , mClipCount("Project.ClipCount", 0)
    , mSelectionSummary("Project.SelectionSummary", "1 clip")
    , mMarkers("Project.Markers")
    , mMarkerCount("Project.MarkerCount", 0)
    , mNotes("Project.Notes", "Rough cut for Friday's review.")
    , mPlayState("MainMonitor.PlayState", "stopped")
    , mPosition("MainMonitor.Position", 0)
    , mTimecode("MainMonitor.TimecodeText", "00:00:00:00")
    , mTimecodeValue("MainMonitor.Timecode")
    , mPlayRate("MainMonitor.PlayRate", 1.0)
    , mLoop("Transport.Loop", false)
    , mShowSafeArea("MainMonitor.ShowSafeArea", true)
    , mCanEdit("Project.CanEdit", true)
    , mExporting("Project.Exporting", false)
    , mCanExport("Project.CanExport", true)
    , mCanRemoveClip("Project.CanRemoveClip", true)
    , mTransport("Transport.Actions")
    , mProjectActions("Project.Actions")
    , mLog("Project.Log")
    , mLastAction("Project.LastAction", "Ready")
    , mRecent("Project.Recent")
    , mMarkerMenu("Project.MarkerMenu")
    , mAspect("MainMonitor.AspectRatio", 169)
    , mAspectText("MainMonitor.AspectText", "16:9")
    , mView("View")
    , mEdit("Edit")
    , mApp("App.Actions")
    , mTransportMenu("Transport.ContextMenu", "Menus/TransportContext")
{
    mClipNames = mClips.add<Bnde_Array<QString>>(
        "name",
        std::vector<QString> { "Harbour at dawn", "Interview: harbour master", "Fishing boats",
                               "Market square", "Gulls (B-roll)", "Sunset over the pier" });
    mClipDurations = mClips.add<Bnde_Array<long>>(
        "duration",
        std::vector<long> { 12 * 25, 95 * 25 + 12, 21 * 25, 34 * 25 + 5, 8 * 25, 27 * 25 + 20 });
    mClipIns = mClips.add<Bnde_Array<long>>(
        "in", std::vector<long> { 3 * 25, 41 * 25 + 10, 0, 12 * 25 + 3, 95 * 25, 7 * 25 + 15 });
    mClipLabels = mClips.add<Bnde_Array<QString>>(
        "label", std::vector<QString> { "Blue", "Red", "Blue", "Green", "", "Yellow" });
    mClips.add<Bnde_Container>("Actions")->add<RowAction>("open",
                                                          [this](long row) { openClip(row); });

    mTransport.add<Action>("play", [this] { play(); });
    mTransport.add<Action>("stop", [this] { stop(); });
    mTransport.add<Action>("stepForward", [this] { step(1); });
    mTransport.add<Action>("stepBack", [this] { step(-1); });
    mTransport.add<Action>("fastForward", [this] { step(cFramesPerSecond); });
    mTransport.add<Action>("rewind", [this] { step(-cFramesPerSecond); });
    mTransport.add<Action>("toStart", [this] { toStart(); });
    mTransport.add<Action>("toEnd", [this] { toEnd(); });
    mTransport.add<Action>("addMarker", [this] { addMarker(); });
    mProjectActions.add<Action>("addClip", [this] { addClip(); });
    mProjectActions.add<Action>("removeClip", [this] { removeClip(); });
    mProjectActions.add<Action>("export", [this] { startExport(); });
    mProjectActions.add<Action>("previousClip", [this] { selectRelative(-1); });
    mProjectActions.add<Action>("nextClip", [this] { selectRelative(+1); });
    mTransport.add<Action>("clearMarkers", [this] { clearMarkers(); });
    mTransport.add<Action>("togglePlay", [this] {
        mPlayState.getValue() == QLatin1String("playing") ? stop() : play();
    });
    mTransport.add<Action>("toggleLoop", [this] {
        mLoop.setValue(!mLoop.getValue());
        say(mLoop.getValue() ? QStringLiteral("Loop on") : QStringLiteral("Loop off"));
    });
    setupMenuModels();

    for (Bnd_ModelBase *m : std::initializer_list<Bnd_ModelBase *> { &mName,
                                                                     &mClips,
                                                                     &mSelection,
                                                                     &mSelectedName,
                                                                     &mSelectedDuration,
                                                                     &mClipCount,
                                                                     &mSelectionSummary,
                                                                     &mMarkers,
                                                                     &mMarkerCount,
                                                                     &mNotes,
                                                                     &mPlayState,
                                                                     &mPosition,
                                                                     &mTimecode,
                                                                     &mTimecodeValue,
                                                                     &mPlayRate,
                                                                     &mLoop,
                                                                     &mShowSafeArea,
                                                                     &mCanEdit,
                                                                     &mExporting,
                                                                     &mCanExport,
                                                                     &mCanRemoveClip,
                                                                     &mTransport,
                                                                     &mProjectActions,
                                                                     &mLog,
                                                                     &mLastAction,
                                                                     &mRecent,
                                                                     &mMarkerMenu,
                                                                     &mAspect,
                                                                     &mAspectText,
                                                                     &mView,
                                                                     &mEdit,
                                                                     &mApp,
                                                                     &mTransportMenu })
        m->Publish();
    // The menus toggle ".selected" of a list item, or write the aspect: the project acts.
    mRecentWatch.setReceiveMessageCB([this](const Bnd_MessageInterface &) { recentPicked(); });
    mRecentWatch.SetConnectionName(QStringLiteral("Project.Recent.selected"));
    mMarkerWatch.setReceiveMessageCB([this](const Bnd_MessageInterface &) { markerPicked(); });
    mMarkerWatch.SetConnectionName(QStringLiteral("Project.MarkerMenu.selected"));
    mAspectWatch.setReceiveMessageCB([this](const Bnd_MessageInterface &m) {
        if (m.is<Bndt_SimpleValue_Notifications::MsgValueChanged>())
            aspectChanged();
    });
    mAspectWatch.SetConnectionName(QStringLiteral("MainMonitor.AspectRatio"));

    selectionChanged();
    say(QStringLiteral("Opened project \"%1\"").arg(mName.getValue()));
}

DemoProject::~DemoProject() = default;

QStringList DemoProject::describeModels() const
{
    QStringList lines;
    Bnd_ConnectionDict &dict = Bnd_ConnectionDict::Singleton();
    for (const QString &name : dict.names())
        describe(lines, name, dict.findModel(name));
    return lines;
}

void DemoProject::say(const QString &iLine)
{
    mLogLines << iLine;
    while (mLogLines.size() > 8)
        mLogLines.removeFirst();
    mLastAction.setValue(iLine);
    mLog.setValue(mLogLines.join(QLatin1Char('\n')));
    qInfo().noquote() << "kivdemo:" << iLine;
}

long DemoProject::selectedDuration() const
{
    const long row = mSelection.getValue();
    return row >= 0 && row < mClipDurations->size() ? mClipDurations->at(row) : mOtherDuration;
}

void DemoProject::setPosition(long iFrame)
{
    const long end = std::max(0L, selectedDuration() - 1);
    const long frame = std::clamp(iFrame, 0L, end);
    mPosition.setValue(frame);
    const Bnd_Timecode tc = Bnd_Timecode::fromFrameCount(frame, cFramesPerSecond);
    mTimecodeValue.setValue(tc);
    mTimecode.setValue(tc.toString());
}

void DemoProject::play()
{
    if (mPlayState.getValue() == QLatin1String("playing"))
        return;
    mPlayState.setValue("playing");
    mPlayTask = std::make_unique<TaskSchedulerTask>(
        "DemoPlaybackTask", 5, [this] { tick(); }, true, 1000 / cFramesPerSecond, true);
    TaskScheduler::instance().addTask(mPlayTask.get(), false);
    say(QStringLiteral("Play \"%1\" from %2").arg(mSelectedName.getValue(), mTimecode.getValue()));
}

void DemoProject::stop()
{
    mPlayTask.reset();
    if (mPlayState.setValue("stopped"))
        say(QStringLiteral("Stopped at %1").arg(mTimecode.getValue()));
}

void DemoProject::tick()
{
    const long next = mPosition.getValue() + 1;
    if (next < selectedDuration()) {
        setPosition(next);
    } else if (mLoop.getValue()) {
        setPosition(0);
    } else {
        // Stop from here without deleting the task whose callback is running.
        mPlayTask->setAbort();
        mPlayState.setValue("stopped");
        say(QStringLiteral("Reached the end of \"%1\"").arg(mSelectedName.getValue()));
    }
}

void DemoProject::step(long iFrames)
{
    setPosition(mPosition.getValue() + iFrames);
    mLastAction.setValue(QStringLiteral("Position %1").arg(mTimecode.getValue()));
}

void DemoProject::toStart()
{
    setPosition(0);
    say(QStringLiteral("Go to start"));
}

void DemoProject::toEnd()
{
    setPosition(selectedDuration() - 1);
    say(QStringLiteral("Go to end"));
}

void DemoProject::addMarker()
{
    mMarkers.append(mPosition.getValue());
    mMarkerCount.setValue(mMarkers.size());
    updateMarkerMenu();
    say(QStringLiteral("Marker %1 at %2").arg(mMarkers.size()).arg(mTimecode.getValue()));
}

void DemoProject::clearMarkers()
{
    if (mMarkers.size() == 0)
        return;
    mMarkers.setValues({});
    mMarkerCount.setValue(0);
    updateMarkerMenu();
    say(QStringLiteral("Markers cleared"));
}

void DemoProject::updateMarkerMenu()
{
    std::vector<QString> names;
    for (long i = 0; i < mMarkers.size(); ++i)
        names.push_back(
            QStringLiteral("Marker %1 at %2")
                .arg(i + 1)
                .arg(Bnd_Timecode::fromFrameCount(mMarkers.at(i), cFramesPerSecond).toString()));
    mMarkerSelected->setValues(std::vector<bool>(names.size(), false));
    mMarkerNames->setValues(std::move(names));
}

void DemoProject::setupMenuModels()
{
    mRecentNames = mRecent.add<Bnde_Array<QString>>(
        "name", std::vector<QString> { "Harbour Documentary", "City at Night", "Alpine Trail" });
    mRecentSelected = mRecent.add<Bnde_Array<bool>>("selected", std::vector<bool>(3, false));
    mMarkerNames = mMarkerMenu.add<Bnde_Array<QString>>("name");
    mMarkerSelected = mMarkerMenu.add<Bnde_Array<bool>>("selected");

    for (const char *panel : { "ShowClips", "ShowBin", "ShowInspector", "ShowActivity" })
        mView.add<Bnde_SimpleValue<bool>>(panel, true);
    mView.add<Bnde_SimpleValue<bool>>("LargeBin", false);

    // The Edit menu acts on whichever text field has (or last had) the focus.
    const char *const commands[]
        = { "undo", "redo", "cut", "copy", "paste", "delete", "selectAll" };
    for (unsigned int i = 0; i < unsigned(Kic_CommandCount); ++i) {
        auto *action = mEdit.add<Action>(commands[i], [i] { Kic_EditMenu::instance().obey(i); });
        action->setIsEnabledCB([i] {
            bool enabled = false;
            QString text;
            return Kic_EditMenu::instance().commandStatus(i, enabled, text) && enabled;
        });
    }

    mApp.add<Action>("openProject", [this] {
        say(QStringLiteral("Open project: the showcase has just its own projects (File > Recent)"));
    });
    mApp.add<Action>("about", [this] {
        say(QStringLiteral("KivCore showcase: every widget, menu and key acts on these models"));
    });
    mApp.add<Action>("quit", [] { QCoreApplication::quit(); });
    mApp.add<Action>("shortcuts", [this] {
        if (mOpenShortcuts)
            mOpenShortcuts();
    });
}

void DemoProject::recentPicked()
{
    for (long i = 0; i < mRecentSelected->size(); ++i) {
        if (!mRecentSelected->at(i))
            continue;
        mRecentSelected->set(i, false); // a pick, not a lasting state
        const QString project = mRecentNames->at(i);
        if (project != mName.getValue()) {
            mName.setValue(project);
            say(QStringLiteral("Opened project \"%1\"").arg(project));
        }
    }
}

void DemoProject::markerPicked()
{
    for (long i = 0; i < mMarkerSelected->size(); ++i) {
        if (!mMarkerSelected->at(i))
            continue;
        mMarkerSelected->set(i, false);
        if (i < mMarkers.size()) {
            setPosition(mMarkers.at(i));
            say(QStringLiteral("Go to marker %1 at %2").arg(i + 1).arg(mTimecode.getValue()));
        }
    }
}

void DemoProject::aspectChanged()
{
    const long aspect = mAspect.getValue();
    const QString text = aspect == 43 ? QStringLiteral("4:3")
        : aspect == 235               ? QStringLiteral("2.35:1")
                                      : QStringLiteral("16:9");
    mAspectText.setValue(text);
    say(QStringLiteral("Aspect ratio %1").arg(text));
}

void DemoProject::addClip()
{
    const long n = mClipNames->size() + 1;
    mClipIns->append(0);
    mClipLabels->append(QString());
    mClipDurations->append(10 * cFramesPerSecond);
    mClipNames->append(QStringLiteral("New clip %1").arg(n)); // last: the bin follows the names
    mClipCount.setValue(mClipNames->size());
    updateStates();
    say(QStringLiteral("Added \"New clip %1\"").arg(n));
}

void DemoProject::removeClip()
{
    const long row = mSelection.getValue();
    if (row < 0 || row >= mClipNames->size())
        return;
    const QString name = mClipNames->at(row);
    mClipDurations->remove(row);
    mClipIns->remove(row);
    mClipLabels->remove(row);
    mClipNames->remove(row); // last: the bin follows the names
    mClipCount.setValue(mClipNames->size());
    mSelection.setValue(std::min(row, mClipNames->size() - 1));
    selectionChanged();
    say(QStringLiteral("Removed \"%1\"").arg(name));
}

void DemoProject::selectClip(long iRow)
{
    if (iRow < 0 || iRow >= mClipNames->size() || iRow == mSelection.getValue())
        return;
    stop();
    mSelection.setValue(iRow);
    selectionChanged();
}

void DemoProject::openClip(long iRow)
{
    if (iRow < 0 || iRow >= mClipNames->size())
        return;
    stop();
    mSelection.setValue(iRow);
    selectionChanged();
    say(QStringLiteral("Opened \"%1\"").arg(mSelectedName.getValue()));
}

void DemoProject::openOther(const QString &iName, long iDuration)
{
    stop();
    mOtherDuration = iDuration;
    mSelection.setValue(-1);
    selectionChanged();
    mSelectedName.setValue(iName);
    say(QStringLiteral("Opened \"%1\"").arg(iName));
}

void DemoProject::selectRelative(long iDelta)
{
    const long count = mClipNames->size();
    if (count == 0)
        return;
    openClip((mSelection.getValue() + iDelta + count) % count);
}

void DemoProject::updateStates()
{
    mCanExport.setValue(!mExporting.getValue() && mClipNames->size() > 0);
    mCanRemoveClip.setValue(mClipNames->size() > 1);
}

void DemoProject::selectionChanged()
{
    const long row = mSelection.getValue();
    const bool valid = row >= 0 && row < mClipNames->size();
    mSelectedName.setValue(valid ? mClipNames->at(row) : QString());
    mSelectedDuration.setValue(selectedDuration());
    mClipCount.setValue(mClipNames->size());
    updateStates();
    setPosition(0);
}

void DemoProject::startExport()
{
    if (mExportTask && mExportTask->isScheduled())
        return;
    mExporting.setValue(true);
    updateStates();
    mExportPercent = 0;
    say(QStringLiteral("Export started"));
    mExportTask = std::make_unique<TaskSchedulerTask>(
        "DemoExportTask", 5, [this] { exportTick(); }, false, 60, true);
    TaskScheduler::instance().addTask(mExportTask.get(), false);
    if (mProgressSink)
        mProgressSink(QStringLiteral("Exporting \"%1\"...").arg(mName.getValue()), 0);
}

void DemoProject::exportTick()
{
    mExportPercent += 4;
    if (mExportPercent < 100) {
        if (mProgressSink)
            mProgressSink(QStringLiteral("Exporting \"%1\"...").arg(mName.getValue()),
                          mExportPercent);
        return;
    }
    // Stop once this callback returns; the task object is dropped by the next export.
    mExportTask->setAbort();
    mExporting.setValue(false);
    updateStates();
    say(QStringLiteral("Export finished: %1.mov").arg(mName.getValue()));
    if (mProgressSink)
        mProgressSink(QString(), -1);
}
