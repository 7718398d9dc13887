#pragma once

#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ListenerBase.h"
#include "Bnd_Variant.h"
#include "kivcore_export.h"

#include <QString>

#include <memory>
#include <vector>

class QWidget;

/// A node of a parsed action script (see Uip_ParseScript).
///
/// A tree is connected once per connection pass of its owner (ConnectAndTypeCheck, which may be
/// repeated with another environment), asked whether it can run (isConnected) and evaluated on
/// every trigger (Evaluate). Every node owns its children.
///
/// The base class is the behaviour of a node that is neither a name nor a call: it connects,
/// evaluates to an empty variant, cannot be assigned to and cannot be called.
class KIVCORE_EXPORT Uip_ParseNode
{
public:
    Uip_ParseNode() = default;
    Uip_ParseNode(const Uip_ParseNode &) = default;
    Uip_ParseNode &operator=(const Uip_ParseNode &) = default;
    virtual ~Uip_ParseNode();

    /// Connects every name below this node to its model in `iEnv`; names beginning with
    /// "$Window" are made unique to the top-level window of `iWidget` (may be null). Answers
    /// whether the connection succeeded.
    virtual bool ConnectAndTypeCheck(const Bnd_ConnectionEnvironmentPtr &iEnv, QWidget *iWidget);
    /// Runs the node and puts its value in `oResult` (may be null). Answers whether it succeeded.
    virtual bool Evaluate(Bnd_Variant *oResult);
    /// Stores a value in the model the node names. Only names can be assigned to.
    virtual bool Assign(Bnd_Variant iValue);
    /// The listener of the model the node names, for calling it. Only names can be called.
    virtual bool EvaluateFunctionRef(Bnd_ListenerBase **oListener);
    /// Whether the node can run now.
    virtual bool isConnected();
};

/// A name of a model: evaluating it reads the model's value, assigning to it writes the value,
/// calling it performs the model's action.
class KIVCORE_EXPORT Uip_Identifier_ParseNode : public Uip_ParseNode
{
public:
    explicit Uip_Identifier_ParseNode(QString iName);
    ~Uip_Identifier_ParseNode() override;

    /// The name as written in the script.
    const QString &GetName() const { return mName; }
    const Bnd_ListenerBase &GetListener() const { return mListener; }

    /// Names the listener after the window-unique form of the name and connects it in `iEnv`.
    bool ConnectAndTypeCheck(const Bnd_ConnectionEnvironmentPtr &iEnv, QWidget *iWidget) override;
    /// Reads the model's value as a variant.
    bool Evaluate(Bnd_Variant *oResult) override;
    /// Writes the value to the model; the model refuses values of another type.
    bool Assign(Bnd_Variant iValue) override;
    bool EvaluateFunctionRef(Bnd_ListenerBase **oListener) override;
    /// Whether the listener is attached to a model.
    bool isConnected() override;

private:
    QString mName;
    Bnd_ListenerBase mListener;
};

/// A text in double quotes; evaluates to a QString.
class KIVCORE_EXPORT Uip_StringLiteral_ParseNode : public Uip_ParseNode
{
public:
    explicit Uip_StringLiteral_ParseNode(QString iValue);
    ~Uip_StringLiteral_ParseNode() override;

    const QString &GetValue() const { return mValue; }
    bool Evaluate(Bnd_Variant *oResult) override;

private:
    QString mValue;
};

/// `true` or `false`; evaluates to a bool.
class KIVCORE_EXPORT Uip_BooleanLiteral_ParseNode : public Uip_ParseNode
{
public:
    explicit Uip_BooleanLiteral_ParseNode(bool iValue);
    ~Uip_BooleanLiteral_ParseNode() override;

    bool GetValue() const { return mValue; }
    bool Evaluate(Bnd_Variant *oResult) override;

private:
    bool mValue;
};

/// A call `F()` or `F(A)`: performs the action of the model F names, with A's value as its one
/// argument.
class KIVCORE_EXPORT Uip_FunctionCall_ParseNode : public Uip_ParseNode
{
public:
    /// `iFunction` is required; `iArgument` may be null (a call without argument).
    Uip_FunctionCall_ParseNode(std::unique_ptr<Uip_ParseNode> iFunction,
                               std::unique_ptr<Uip_ParseNode> iArgument);
    ~Uip_FunctionCall_ParseNode() override;

    Uip_ParseNode *GetFunction() const { return mFunctionP.get(); }
    Uip_ParseNode *GetArgument() const { return mArgumentP.get(); }

    /// Connects the function, then the argument (only when the function connected).
    bool ConnectAndTypeCheck(const Bnd_ConnectionEnvironmentPtr &iEnv, QWidget *iWidget) override;
    /// Performs the action. Fails without sending anything when the function is not a name, the
    /// argument fails or evaluates to nothing, or the function's model is not connected. The
    /// action may put its return value in `oResult`.
    bool Evaluate(Bnd_Variant *oResult) override;
    /// The function is connected and enabled, and the argument (if any) is connected.
    bool isConnected() override;

private:
    std::unique_ptr<Uip_ParseNode> mFunctionP;
    std::unique_ptr<Uip_ParseNode> mArgumentP;
};

/// An assignment `Target = Source`. It produces no value: in `A = B = C`, B receives C's value
/// and A an empty variant. A chain nests in the source side; it is walked in loops, so its
/// length costs no stack.
class KIVCORE_EXPORT Uip_Assign_ParseNode final : public Uip_ParseNode
{
public:
    Uip_Assign_ParseNode(std::unique_ptr<Uip_ParseNode> iTarget,
                         std::unique_ptr<Uip_ParseNode> iSource);
    ~Uip_Assign_ParseNode() override;

    Uip_ParseNode *GetTarget() const { return mTargetP.get(); }
    Uip_ParseNode *GetSource() const { return mSourceP.get(); }

    /// Fails when a side is missing; connects the target, then the source (only when the target
    /// connected).
    bool ConnectAndTypeCheck(const Bnd_ConnectionEnvironmentPtr &iEnv, QWidget *iWidget) override;
    /// Evaluates the source and assigns its value to the target. `oResult` is left untouched.
    bool Evaluate(Bnd_Variant *oResult) override;
    /// Every present side is connected.
    bool isConnected() override;

private:
    /// The source when it is itself an assignment (the next link of a chain), else null.
    Uip_Assign_ParseNode *nextInChain() const;

    std::unique_ptr<Uip_ParseNode> mTargetP;
    std::unique_ptr<Uip_ParseNode> mSourceP;
};

/// The statements of a script, in order. The root of every parsed script.
class KIVCORE_EXPORT Uip_StatementBlock_ParseNode : public Uip_ParseNode
{
public:
    explicit Uip_StatementBlock_ParseNode(std::vector<std::unique_ptr<Uip_ParseNode>> iStatements
                                          = {});
    ~Uip_StatementBlock_ParseNode() override;

    int GetStatementCount() const { return int(mStatements.size()); }
    Uip_ParseNode *GetStatement(int i) const { return mStatements[size_t(i)].get(); }

    /// Connects every statement, also after one failed; answers whether all connected.
    bool ConnectAndTypeCheck(const Bnd_ConnectionEnvironmentPtr &iEnv, QWidget *iWidget) override;
    /// Evaluates the statements in order, each with `oResult`, and stops at the first that
    /// fails (the earlier ones stay done). An empty block succeeds.
    bool Evaluate(Bnd_Variant *oResult) override;
    /// Every statement is connected.
    bool isConnected() override;

private:
    std::vector<std::unique_ptr<Uip_ParseNode>> mStatements;
};
