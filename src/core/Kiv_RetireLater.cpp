#include "Kiv_RetireLater.h"

#include "Bnd_ListenerBase.h"
#include "Bnd_ModelBase.h"
#include "Kiv_ViewInterface.h"

#include <QCoreApplication>
#include <QObject>

#include <vector>

namespace {

// The objects retired since the event loop last ran; deleted with the batch, which goes through
// QObject::deleteLater() and so waits for the event loop (also when a dialog's nested loop is
// running at the time).
class Batch : public QObject
{
public:
    ~Batch() override;

    std::vector<std::unique_ptr<Bnd_ListenerBase>> listeners;
    std::vector<std::unique_ptr<Bnd_ModelBase>> models;
    std::vector<std::unique_ptr<Kiv_ViewInterface>> views;
};

Batch *gBatch = nullptr;
int gPending = 0;

Batch::~Batch()
{
    if (gBatch == this)
        gBatch = nullptr; // what the deletions below retire goes into a new batch
    gPending -= int(listeners.size() + models.size() + views.size());
    views.clear(); // first: their listeners are among them
    listeners.clear();
    models.clear();
}

// An application object that goes away drops the deferred deletions still posted to it.
void deletePendingBatch()
{
    delete gBatch;
}

Batch *currentBatch()
{
    if (!gBatch) {
        gBatch = new Batch;
        gBatch->deleteLater();
        qAddPostRoutine(&deletePendingBatch);
    }
    return gBatch;
}

} // namespace

namespace Kiv_RetireLater {

void listener(std::unique_ptr<Bnd_ListenerBase> iListener)
{
    if (!iListener)
        return;
    // The owner hears nothing more, not even that the listener lost its model.
    iListener->setReceiveMessageCB(Bnd_ListenerBase::ReceiveCallback());
    iListener->ClearConnection();
    if (!QCoreApplication::instance())
        return; // deleted here
    currentBatch()->listeners.push_back(std::move(iListener));
    ++gPending;
}

void model(std::unique_ptr<Bnd_ModelBase> iModel)
{
    if (!iModel)
        return;
    iModel->setReceiveMessageCB(Bnd_ModelBase::ReceiveCallback());
    iModel->UnPublish();
    if (!QCoreApplication::instance())
        return;
    currentBatch()->models.push_back(std::move(iModel));
    ++gPending;
}

void view(std::unique_ptr<Kiv_ViewInterface> iView)
{
    if (!iView)
        return;
    iView->setParent(nullptr); // its container may be going away
    if (!QCoreApplication::instance())
        return;
    currentBatch()->views.push_back(std::move(iView));
    ++gPending;
}

int pendingCount()
{
    return gPending;
}

} // namespace Kiv_RetireLater
