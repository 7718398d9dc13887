#pragma once

// The showcase's in-process "project": the data a video editor would publish for its screens.
// Everything a widget shows comes from here through named models; everything a user does
// comes back as set messages or actions, which change the models and write a log line.

#include "Bnd_ConnectionToModel.h"
#include "Bnd_Timecode.h"
#include "Bnde_ActionModel.h"
#include "Bnde_Array.h"
#include "Bnde_Container.h"
#include "Bnde_SimpleValue.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class TaskSchedulerTask;

class DemoProject
{
public:
    static constexpr int cFramesPerSecond = 25;

    DemoProject();
    ~DemoProject();

    /// Every published model with its type and current value, one per line, sorted by name.
    QStringList describeModels() const;

    /// Where a simulated long operation reports progress (message, percent 0-100, or -1 when
    /// it has finished); the application shows it in a status window.
    void setProgressSink(std::function<void(const QString &, int)> iSink)
    {
        mProgressSink = std::move(iSink);
    }
    /// What "App.Actions.shortcuts" opens (the application's shortcuts dialog).
    void setShortcutsOpener(std::function<void()> iOpen) { mOpenShortcuts = std::move(iOpen); }
    /// Writes a line to the activity log.
    void say(const QString &iLine);

    /// Makes a clip of the project the current one (inspector, monitor) without a log line.
    void selectClip(long iRow);
    /// Opens a clip of the project in the monitor.
    void openClip(long iRow);
    /// Opens a clip that is not one of the project's (a generated one of the large bin).
    void openOther(const QString &iName, long iDuration);
    /// What the inspector says of the bin's selection ("3 clips, 00:01:10:05").
    void setSelectionSummary(const QString &iText) { mSelectionSummary.setValue(iText); }

    // The clips, for the bin.
    const Bnde_Array<QString> &clipNames() const { return *mClipNames; }
    const Bnde_Array<long> &clipDurations() const { return *mClipDurations; }
    const Bnde_Array<long> &clipInPoints() const { return *mClipIns; }
    const Bnde_Array<QString> &clipLabels() const { return *mClipLabels; }

    // Direct access for the application shell and tests.
    const QString &playState() const { return mPlayState.getValue(); }
    long position() const { return mPosition.getValue(); }
    const QString &log() const { return mLog.getValue(); }
    long selection() const { return mSelection.getValue(); }

private:
    void play();
    void stop();
    void step(long iFrames);
    void toStart();
    void toEnd();
    void addMarker();
    void addClip();
    void removeClip();
    void selectRelative(long iDelta);
    void updateStates();
    void startExport();
    void exportTick();
    void tick();
    void selectionChanged();
    void setPosition(long iFrame);
    long selectedDuration() const;
    void clearMarkers();
    void updateMarkerMenu();
    void recentPicked();
    void markerPicked();
    void aspectChanged();
    void setupMenuModels();

    // Project data.
    Bnde_SimpleValue<QString> mName;
    Bnde_Container mClips;
    Bnde_Array<QString> *mClipNames = nullptr;
    Bnde_Array<long> *mClipDurations = nullptr;
    Bnde_Array<long> *mClipIns = nullptr; // source in points, in frames
    Bnde_Array<QString> *mClipLabels = nullptr; // colour labels
    long mOtherDuration = 0; // of an opened clip that is not the project's
    Bnde_Index<long> mSelection;
    Bnde_SimpleValue<QString> mSelectedName;
    Bnde_SimpleValue<long> mSelectedDuration;
    Bnde_SimpleValue<long> mClipCount;
    Bnde_SimpleValue<QString> mSelectionSummary;
    Bnde_Array<long> mMarkers;
    Bnde_SimpleValue<long> mMarkerCount;
    Bnde_SimpleValue<QString> mNotes;

    // Monitor and transport.
    Bnde_SimpleValue<QString> mPlayState;
    Bnde_SimpleValue<long> mPosition;
    Bnde_SimpleValue<QString> mTimecode;
    Bnde_SimpleValue<Bnd_Timecode> mTimecodeValue;
    Bnde_SimpleValue<double> mPlayRate;
    Bnde_SimpleValue<bool> mLoop;
    Bnde_SimpleValue<bool> mShowSafeArea;
    Bnde_SimpleValue<bool> mCanEdit;
    Bnde_SimpleValue<bool> mExporting;
    Bnde_SimpleValue<bool> mCanExport;
    Bnde_SimpleValue<bool> mCanRemoveClip;
    Bnde_Container mTransport;
    Bnde_Container mProjectActions;

    // What happened, newest last.
    Bnde_SimpleValue<QString> mLog;
    Bnde_SimpleValue<QString> mLastAction;
    QStringList mLogLines;

    // What the menus show and act on.
    Bnde_Container mRecent; // recent projects: "name", "selected"
    Bnde_Array<QString> *mRecentNames = nullptr;
    Bnde_Array<bool> *mRecentSelected = nullptr;
    Bnde_Container mMarkerMenu; // the markers as menu items: "name", "selected"
    Bnde_Array<QString> *mMarkerNames = nullptr;
    Bnde_Array<bool> *mMarkerSelected = nullptr;
    Bnde_SimpleValue<long> mAspect; // 43, 169 or 235
    Bnde_SimpleValue<QString> mAspectText;
    Bnde_Container mView; // panel visibility: ShowClips, ShowInspector, ShowActivity
    Bnde_Container mEdit; // the edit commands of the focused text field
    Bnde_Container mApp; // openProject, about, quit
    Bnde_SimpleValue<QString> mTransportMenu; // the transport buttons' context menu
    Bnd_ConnectionToModel<Bndt_Array<bool>> mRecentWatch;
    Bnd_ConnectionToModel<Bndt_Array<bool>> mMarkerWatch;
    Bnd_ConnectionToModel<Bndt_SimpleValue<long>> mAspectWatch;

    std::unique_ptr<TaskSchedulerTask> mPlayTask;
    std::unique_ptr<TaskSchedulerTask> mExportTask;
    int mExportPercent = 0;
    std::function<void(const QString &, int)> mProgressSink;
    std::function<void()> mOpenShortcuts;
};
