#include "Kiv_Script.h"

#include "Uip_ParseScript.h"

Kiv_Script::Kiv_Script() = default;

Kiv_Script::~Kiv_Script()
{
    for (RunFrame *f = mRunFrames; f; f = f->outer)
        f->destroyed = true;
    dropTree(); // a running tree stays alive until its run ends
}

bool Kiv_Script::setText(const QString &iText)
{
    if (iText == mText)
        return false;
    mText = iText;
    dropTree();
    if (!mText.isEmpty())
        mNodeP = Uip_ParseScript(mText, nullptr);
    return true;
}

bool Kiv_Script::reparse()
{
    if (!mNodeP && !mText.isEmpty())
        mNodeP = Uip_ParseScript(mText, nullptr);
    return hasScript();
}

bool Kiv_Script::connect(const Bnd_ConnectionEnvironmentPtr &iEnv, QWidget *iWidget)
{
    if (!mNodeP)
        return false;
    if (mNodeP->ConnectAndTypeCheck(iEnv, iWidget))
        return true;
    dropTree();
    return false;
}

bool Kiv_Script::isConnected() const
{
    return mNodeP && mNodeP->isConnected();
}

bool Kiv_Script::run()
{
    if (!mNodeP)
        return false;
    Uip_ParseNode *node = mNodeP.get();
    RunFrame frame { mRunFrames, false, {} };
    mRunFrames = &frame;
    Bnd_Variant result;
    const bool ok = node->Evaluate(&result);
    if (!frame.destroyed) // else this object is gone: touch nothing of it
        mRunFrames = frame.outer;
    return ok; // trees the run dropped die with the frame
}

void Kiv_Script::dropTree()
{
    if (mRunFrames && mNodeP) {
        RunFrame *outermost = mRunFrames;
        while (outermost->outer)
            outermost = outermost->outer;
        outermost->kept.push_back(std::move(mNodeP));
    }
    mNodeP.reset();
}
