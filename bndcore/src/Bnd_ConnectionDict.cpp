#include "Bnd_ConnectionDict.h"

#include "Bnd_ArrayElementModel.h"
#include "Bnd_ListenerBase.h"
#include "Bnd_ModelInterface.h"
#include "Bnd_Private.h"
#include "Bndt_Type.h"

#include <algorithm>

Bnd_ConnectionDict::Bnd_ConnectionDict() = default;

Bnd_ConnectionDict::~Bnd_ConnectionDict()
{
    // Whatever still waits here must not call back into a dictionary that is gone.
    for (auto &bucket : mWaiting)
        for (Bnd_ListenerBase *l : bucket) {
            l->mWaitSlot = -1;
            l->mWaiting = false;
            l->mService = nullptr;
        }
}

Bnd_ConnectionDict &Bnd_ConnectionDict::Singleton()
{
    static Bnd_ConnectionDict *dict = new Bnd_ConnectionDict; // lives until the process ends
    return *dict;
}

QString Bnd_ConnectionDict::rootOf(const QString &iName)
{
    for (int i = 0; i < iName.size(); ++i) {
        const QChar c = iName.at(i);
        if (c == QLatin1Char('.') || c == QLatin1Char('['))
            return iName.left(i);
    }
    return iName;
}

bool Bnd_ConnectionDict::publishModel(const QString &iName, Bnd_ModelInterface *iModel)
{
    if (iName.isEmpty() || !iModel)
        return false;
    auto it = mModels.find(iName);
    if (it != mModels.end()) {
        if (it.value() == iModel)
            return true;
        qCWarning(lcBnd).noquote().nospace() << "Bnd_ConnectionDict::publishModel, the name '"
                                             << iName << "' is already published by another model";
        return false;
    }
    mModels.insert(iName, iModel);
    retryWaiting(rootOf(iName));
    return true;
}

void Bnd_ConnectionDict::unpublishModel(const QString &iName, Bnd_ModelInterface *iModel)
{
    auto it = mModels.find(iName);
    if (it != mModels.end() && it.value() == iModel)
        mModels.erase(it);
}

Bnd_ModelInterface *Bnd_ConnectionDict::findModel(const QString &iName) const
{
    auto it = mModels.constFind(iName);
    if (it != mModels.constEnd())
        return it.value();
    // "Array.arrayMetaData" names the change notifications of an array: the array itself.
    static const QString metaData = QStringLiteral(".arrayMetaData");
    if (iName.endsWith(metaData)) {
        Bnd_ModelInterface *array = findModel(iName.chopped(metaData.size()));
        const Bndt_Type::Kind kind = array ? array->getModelType().kind() : Bndt_Type::Any;
        if (kind == Bndt_Type::Array || kind == Bndt_Type::ActionArray)
            return array;
    }
    // Descend from the longest published prefix.
    for (int dot = iName.lastIndexOf(QLatin1Char('.')); dot > 0;
         dot = iName.lastIndexOf(QLatin1Char('.'), dot - 1)) {
        auto prefix = mModels.constFind(iName.left(dot));
        if (prefix != mModels.constEnd())
            return prefix.value()->modelInterface_findChild(iName.mid(dot + 1));
    }
    return nullptr;
}

Bnd_ConnectionServiceInterface::Resolution Bnd_ConnectionDict::resolve(const QString &iName)
{
    Resolution r;
    const int open = iName.indexOf(QLatin1Char('['));
    if (open < 0) {
        r.model = findModel(iName);
        if (!r.model)
            r.waitKey = rootOf(iName);
        return r;
    }

    const QString arrayName = iName.left(open);
    const QString subscript = iName.mid(open + 1, iName.size() - open - 2).trimmed();
    if (!iName.endsWith(QLatin1Char(']')) || subscript.isEmpty()
        || subscript.contains(QLatin1Char('[')) || subscript.contains(QLatin1Char(']'))) {
        qCWarning(lcBnd).noquote().nospace()
            << "Bnd_ConnectionDict::resolve, '" << iName
            << "' is not of the form Array[index] or Array[IndexModel]";
        r.waitKey = rootOf(iName);
        return r;
    }

    Bnd_ModelInterface *array = findModel(arrayName);
    const Bndt_Type::Kind kind = array ? array->getModelType().kind() : Bndt_Type::Any;
    if (!array || (kind != Bndt_Type::Array && kind != Bndt_Type::ActionArray)) {
        if (array)
            qCWarning(lcBnd).noquote().nospace()
                << "Bnd_ConnectionDict::resolve, '" << arrayName << "' is not an array";
        r.waitKey = rootOf(arrayName);
        return r;
    }

    bool isNumber = false;
    const long index = subscript.toLong(&isNumber);
    if (isNumber) {
        r.model = new Bnd_ArrayElementModel(array, index);
    } else {
        Bnd_ModelInterface *indexModel = findModel(subscript);
        if (!indexModel) {
            r.waitKey = rootOf(subscript);
            return r;
        }
        const Bndt_Type &t = indexModel->getModelType();
        if (t.kind() != Bndt_Type::Atomic || *t.valueType() != typeid(long)) {
            qCWarning(lcBnd).noquote().nospace()
                << "Bnd_ConnectionDict::resolve, the index model '" << subscript << "' holds "
                << t.describe() << ", not long";
            r.waitKey = rootOf(subscript);
            return r;
        }
        r.model = new Bnd_ArrayElementModel(array, indexModel);
    }
    r.modelIsOwned = true;
    return r;
}

void Bnd_ConnectionDict::addWaitingListener(Bnd_ListenerBase *iListener, const QString &iKey)
{
    if (iListener->mWaitSlot >= 0)
        removeWaitingListener(iListener, QString());
    std::vector<Bnd_ListenerBase *> &bucket = mWaiting[iKey];
    iListener->mWaitKey = iKey;
    iListener->mWaitSlot = int(bucket.size());
    bucket.push_back(iListener);
}

void Bnd_ConnectionDict::removeWaitingListener(Bnd_ListenerBase *iListener, const QString &)
{
    if (iListener->mInRetryBatch) {
        for (auto *batch : mRetrying)
            std::replace(batch->begin(), batch->end(), iListener,
                         static_cast<Bnd_ListenerBase *>(nullptr));
        iListener->mInRetryBatch = false;
    }
    if (iListener->mWaitSlot < 0)
        return;
    auto it = mWaiting.find(iListener->mWaitKey);
    if (it != mWaiting.end()) {
        std::vector<Bnd_ListenerBase *> &bucket = it.value();
        const size_t slot = size_t(iListener->mWaitSlot);
        if (slot < bucket.size() && bucket[slot] == iListener) {
            bucket[slot] = bucket.back();
            bucket[slot]->mWaitSlot = int(slot);
            bucket.pop_back();
            if (bucket.empty())
                mWaiting.erase(it);
        }
    }
    iListener->mWaitSlot = -1;
    iListener->mWaitKey.clear();
}

void Bnd_ConnectionDict::retryWaiting(const QString &iRootName)
{
    auto it = mWaiting.find(iRootName);
    if (it == mWaiting.end())
        return;
    std::vector<Bnd_ListenerBase *> batch;
    batch.swap(it.value());
    mWaiting.erase(it);
    for (Bnd_ListenerBase *l : batch) {
        l->mWaitSlot = -1;
        l->mWaitKey.clear();
        l->mWaiting = false;
        l->mInRetryBatch = true;
    }
    // A callback run by an attachment may destroy listeners of this batch; they take
    // themselves out of it (removeWaitingListener).
    mRetrying.push_back(&batch);
    for (size_t i = 0; i < batch.size(); ++i) {
        Bnd_ListenerBase *l = batch[i];
        if (!l)
            continue;
        batch[i] = nullptr;
        l->mInRetryBatch = false;
        l->tryAttach();
    }
    mRetrying.erase(std::find(mRetrying.begin(), mRetrying.end(), &batch));
}

QStringList Bnd_ConnectionDict::names() const
{
    QStringList list = mModels.keys();
    list.sort();
    return list;
}

int Bnd_ConnectionDict::waitingCount() const
{
    int n = 0;
    for (const auto &bucket : mWaiting)
        n += int(bucket.size());
    return n;
}
