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

Uip_Assign_ParseNode::~Uip_Assign_ParseNode() = default;

bool Uip_Assign_ParseNode::ConnectAndTypeCheck(const Bnd_ConnectionEnvironmentPtr &iEnv,
                                               QWidget *iWidget)
{
    if (!mTargetP || !mSourceP)
        return false;
    return mTargetP->ConnectAndTypeCheck(iEnv, iWidget)
        && mSourceP->ConnectAndTypeCheck(iEnv, iWidget);
}

bool Uip_Assign_ParseNode::Evaluate(Bnd_Variant *)
{
    if (!mTargetP || !mSourceP)
        return false;
    Bnd_Variant value;
    if (!mSourceP->Evaluate(&value))
        return false;
    return mTargetP->Assign(value);
}

bool Uip_Assign_ParseNode::isConnected()
{
    return (!mTargetP || mTargetP->isConnected()) && (!mSourceP || mSourceP->isConnected());
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
