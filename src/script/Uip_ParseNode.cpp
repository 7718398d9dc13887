#include "Uip_ParseNode.h"

#include "Bndt_Action_API.h"
#include "Bndt_SimpleValue_API.h"
#include "Kiv_ConnectionUtils.h"

#include <utility>

namespace {
// Every message of a script goes to the model with the echo to the sending listener on.
constexpr bool cEchoToSender = true;
} // namespace

// ---------------------------------------------------------------------------------------------
// Uip_ParseNode

Uip_ParseNode::~Uip_ParseNode() = default;

bool Uip_ParseNode::ConnectAndTypeCheck(const Bnd_ConnectionEnvironmentPtr &, QWidget *)
{
    return true;
}

bool Uip_ParseNode::Evaluate(Bnd_Variant *oResult)
{
    if (oResult)
        *oResult = Bnd_Variant();
    return true;
}

bool Uip_ParseNode::Assign(Bnd_Variant)
{
    return false;
}

bool Uip_ParseNode::EvaluateFunctionRef(Bnd_ListenerBase **)
{
    return false;
}

bool Uip_ParseNode::isConnected()
{
    return true;
}

// ---------------------------------------------------------------------------------------------
// Uip_Identifier_ParseNode

Uip_Identifier_ParseNode::Uip_Identifier_ParseNode(QString iName)
    : mName(std::move(iName))
{ }

Uip_Identifier_ParseNode::~Uip_Identifier_ParseNode() = default;

bool Uip_Identifier_ParseNode::ConnectAndTypeCheck(const Bnd_ConnectionEnvironmentPtr &iEnv,
                                                   QWidget *iWidget)
{
    mListener.SetConnectionName(Kiv_SubscriptionIdentifierSubstitution(mName, iWidget));
    return mListener.connect(iEnv);
}

bool Uip_Identifier_ParseNode::Evaluate(Bnd_Variant *oResult)
{
    return mListener.SendMessageToModel(Bndt_SimpleValue_BaseAPI::MsgGetVariant(oResult),
                                        cEchoToSender);
}

bool Uip_Identifier_ParseNode::Assign(Bnd_Variant iValue)
{
    return mListener.SendMessageToModel(Bndt_SimpleValue_BaseAPI::MsgSetVariant(std::move(iValue)),
                                        cEchoToSender);
}

bool Uip_Identifier_ParseNode::EvaluateFunctionRef(Bnd_ListenerBase **oListener)
{
    if (oListener)
        *oListener = &mListener;
    return true;
}

bool Uip_Identifier_ParseNode::isConnected()
{
    return mListener.isConnectedToModel();
}

// ---------------------------------------------------------------------------------------------
// Literals

Uip_StringLiteral_ParseNode::Uip_StringLiteral_ParseNode(QString iValue)
    : mValue(std::move(iValue))
{ }

Uip_StringLiteral_ParseNode::~Uip_StringLiteral_ParseNode() = default;

bool Uip_StringLiteral_ParseNode::Evaluate(Bnd_Variant *oResult)
{
    if (oResult)
        *oResult = Bnd_Variant(mValue);
    return true;
}

Uip_BooleanLiteral_ParseNode::Uip_BooleanLiteral_ParseNode(bool iValue)
    : mValue(iValue)
{ }

Uip_BooleanLiteral_ParseNode::~Uip_BooleanLiteral_ParseNode() = default;

bool Uip_BooleanLiteral_ParseNode::Evaluate(Bnd_Variant *oResult)
{
    if (oResult)
        *oResult = Bnd_Variant(mValue);
    return true;
}

// ---------------------------------------------------------------------------------------------
// Uip_FunctionCall_ParseNode

Uip_FunctionCall_ParseNode::Uip_FunctionCall_ParseNode(std::unique_ptr<Uip_ParseNode> iFunction,
                                                       std::unique_ptr<Uip_ParseNode> iArgument)
    : mFunctionP(std::move(iFunction))
    , mArgumentP(std::move(iArgument))
{ }

Uip_FunctionCall_ParseNode::~Uip_FunctionCall_ParseNode() = default;

bool Uip_FunctionCall_ParseNode::ConnectAndTypeCheck(const Bnd_ConnectionEnvironmentPtr &iEnv,
                                                     QWidget *iWidget)
{
    if (!mFunctionP || !mFunctionP->ConnectAndTypeCheck(iEnv, iWidget))
        return false;
    return !mArgumentP || mArgumentP->ConnectAndTypeCheck(iEnv, iWidget);
}

bool Uip_FunctionCall_ParseNode::Evaluate(Bnd_Variant *oResult)
{
    Bnd_ListenerBase *listener = nullptr;
    if (!mFunctionP || !mFunctionP->EvaluateFunctionRef(&listener) || !listener)
        return false;

    Bnd_ArgList arguments;
    if (mArgumentP) {
        Bnd_Variant argument;
        if (!mArgumentP->Evaluate(&argument) || argument.isEmpty())
            return false;
        arguments.push_back(std::move(argument));
    }
    if (!listener->isConnectedToModel())
        return false;

    Bnd_Variant unused;
    return listener->SendMessageToModel(
        Bndt_Action_API::MsgAction(oResult ? oResult : &unused, arguments), cEchoToSender);
}

bool Uip_FunctionCall_ParseNode::isConnected()
{
    Bnd_ListenerBase *listener = nullptr;
    if (!mFunctionP || !mFunctionP->isConnected() || !mFunctionP->EvaluateFunctionRef(&listener)
        || !listener)
        return false;
    bool enabled = false;
    if (!listener->SendMessageToModel(Bndt_Action_API::MsgIsEnabled(&enabled), cEchoToSender)
        || !enabled)
        return false;
    return !mArgumentP || mArgumentP->isConnected();
}

// ---------------------------------------------------------------------------------------------
// Uip_Assign_ParseNode

Uip_Assign_ParseNode::Uip_Assign_ParseNode(std::unique_ptr<Uip_ParseNode> iTarget,
                                           std::unique_ptr<Uip_ParseNode> iSource)
    : mTargetP(std::move(iTarget))
    , mSourceP(std::move(iSource))
{ }

// `A = B = C` nests one assignment per "=" in the source side. Every walk over such a chain is
// a loop, so that a chain of any length needs no stack.

Uip_Assign_ParseNode *Uip_Assign_ParseNode::nextInChain() const
{
    return dynamic_cast<Uip_Assign_ParseNode *>(mSourceP.get());
}

Uip_Assign_ParseNode::~Uip_Assign_ParseNode()
{
    // Unlink the chain first: each link then dies without a source to recurse into.
    std::unique_ptr<Uip_ParseNode> next = std::move(mSourceP);
    while (auto *link = dynamic_cast<Uip_Assign_ParseNode *>(next.get())) {
        std::unique_ptr<Uip_ParseNode> after = std::move(link->mSourceP);
        next = std::move(after);
    }
}

bool Uip_Assign_ParseNode::ConnectAndTypeCheck(const Bnd_ConnectionEnvironmentPtr &iEnv,
                                               QWidget *iWidget)
{
    for (Uip_Assign_ParseNode *link = this;;) {
        if (!link->mTargetP || !link->mSourceP
            || !link->mTargetP->ConnectAndTypeCheck(iEnv, iWidget))
            return false;
        Uip_Assign_ParseNode *next = link->nextInChain();
        if (!next)
            return link->mSourceP->ConnectAndTypeCheck(iEnv, iWidget);
        link = next;
    }
}

bool Uip_Assign_ParseNode::Evaluate(Bnd_Variant *)
{
    // The innermost assignment takes the value of the last source; every outer one assigns
    // the empty value an assignment produces, once the one inside it succeeded.
    if (!mTargetP || !mSourceP)
        return false;
    Bnd_Variant value;
    if (!nextInChain()) // the usual single assignment
        return mSourceP->Evaluate(&value) && mTargetP->Assign(value);

    std::vector<Uip_Assign_ParseNode *> chain;
    for (Uip_Assign_ParseNode *link = this; link; link = link->nextInChain()) {
        if (!link->mTargetP || !link->mSourceP)
            return false;
        chain.push_back(link);
    }
    if (!chain.back()->mSourceP->Evaluate(&value))
        return false;
    for (auto link = chain.rbegin(); link != chain.rend(); ++link) {
        if (!(*link)->mTargetP->Assign(value))
            return false;
        value = Bnd_Variant();
    }
    return true;
}

bool Uip_Assign_ParseNode::isConnected()
{
    for (Uip_Assign_ParseNode *link = this;;) {
        if (link->mTargetP && !link->mTargetP->isConnected())
            return false;
        Uip_Assign_ParseNode *next = link->nextInChain();
        if (!next)
            return !link->mSourceP || link->mSourceP->isConnected();
        link = next;
    }
}

// ---------------------------------------------------------------------------------------------
// Uip_StatementBlock_ParseNode

Uip_StatementBlock_ParseNode::Uip_StatementBlock_ParseNode(
    std::vector<std::unique_ptr<Uip_ParseNode>> iStatements)
    : mStatements(std::move(iStatements))
{ }

Uip_StatementBlock_ParseNode::~Uip_StatementBlock_ParseNode() = default;

bool Uip_StatementBlock_ParseNode::ConnectAndTypeCheck(const Bnd_ConnectionEnvironmentPtr &iEnv,
                                                       QWidget *iWidget)
{
    bool allConnected = true;
    for (const auto &statement : mStatements)
        allConnected = statement->ConnectAndTypeCheck(iEnv, iWidget) && allConnected;
    return allConnected;
}

bool Uip_StatementBlock_ParseNode::Evaluate(Bnd_Variant *oResult)
{
    for (const auto &statement : mStatements)
        if (!statement->Evaluate(oResult))
            return false;
    return true;
}

bool Uip_StatementBlock_ParseNode::isConnected()
{
    for (const auto &statement : mStatements)
        if (!statement->isConnected())
            return false;
    return true;
}
