#include "Kiv_Script.h"

#include "Uip_ParseScript.h"

Kiv_Script::Kiv_Script() = default;

Kiv_Script::~Kiv_Script() = default;

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
    ++mRunDepth;
    Bnd_Variant result;
    const bool ok = node->Evaluate(&result);
    if (--mRunDepth == 0)
        mRetired.clear();
    return ok;
}

void Kiv_Script::dropTree()
{
    if (mRunDepth > 0 && mNodeP)
        mRetired.push_back(std::move(mNodeP));
    mNodeP.reset();
}
