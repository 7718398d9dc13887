// The action-script parser: a tokenizer and four nested stages (statements, parentheses,
// assignment, call). Each stage takes one token at a time; the first error ends the parse and
// the partly built nodes go with the stages that own them.

#include "Uip_ParseScript.h"

#include <QRegularExpression>

#include <utility>
#include <vector>

namespace {

// ---------------------------------------------------------------------------------------------
// Tokens

enum class TokenKind {
    End, // the script is exhausted
    Unknown,
    Expression,
    ArgumentList, // the content of a pair of parentheses: one argument node or none
    None, // no expression; what an empty stage builds
    AssignOp,
    OpenParen,
    CloseParen,
    Semicolon
};

struct ScriptToken
{
    ScriptToken() = default;
    explicit ScriptToken(TokenKind iKind, std::unique_ptr<Uip_ParseNode> iNode = nullptr)
        : kind(iKind)
        , nodeP(std::move(iNode))
    { }

    TokenKind kind = TokenKind::None;
    std::unique_ptr<Uip_ParseNode> nodeP;
    // The tokenizer keeps no positions; every token carries 0.
    long firstPosition = 0;
    long secondPosition = 0;
};

Uip_ParseError makeError(const char *iMessage)
{
    return Uip_ParseError(QString::fromLatin1(iMessage), 0, 0);
}

// ---------------------------------------------------------------------------------------------
// Tokenizer: yields one token per call and consumes its text from the front of the script.
// An Unknown token consumes nothing, so it comes again on the next call.

class ScriptTokenizer
{
public:
    explicit ScriptTokenizer(QString iScript)
        : mText(std::move(iScript))
        , mEnd(mText.size())
    {
        while (mEnd > 0 && mText.at(mEnd - 1).isSpace())
            --mEnd;
    }

    ScriptToken next()
    {
        while (mPos < mEnd && mText.at(mPos).isSpace())
            ++mPos;
        if (mPos >= mEnd)
            return ScriptToken(TokenKind::End);

        const QStringView rest = QStringView(mText).mid(mPos, mEnd - mPos);
        if (rest.startsWith(u"false") || rest.startsWith(u"true")) {
            // A boolean literal takes the rest of the line with it.
            static const QRegularExpression cBoolean(QStringLiteral("(false|true).*"));
            const QRegularExpressionMatch m = matchHere(cBoolean);
            if (!m.hasMatch())
                return ScriptToken(TokenKind::Unknown);
            const bool value = m.capturedView(1) != u"false";
            mPos = m.capturedEnd(0);
            return ScriptToken(TokenKind::Expression,
                               std::make_unique<Uip_BooleanLiteral_ParseNode>(value));
        }

        const QChar first = rest.front();
        if (first.isLetter() || first == QLatin1Char('$')) {
            static const QRegularExpression cName(QStringLiteral("[\\w\\.\\$\\[\\]:]+"));
            const QRegularExpressionMatch m = matchHere(cName);
            if (!m.hasMatch())
                return ScriptToken(TokenKind::Unknown);
            mPos = m.capturedEnd(0);
            return ScriptToken(TokenKind::Expression,
                               std::make_unique<Uip_Identifier_ParseNode>(m.captured(0)));
        }

        switch (first.unicode()) {
        case u'"': {
            static const QRegularExpression cString(QStringLiteral("\"([^\"]*)\""));
            const QRegularExpressionMatch m = matchHere(cString);
            if (!m.hasMatch())
                return ScriptToken(TokenKind::Unknown); // unterminated
            mPos = m.capturedEnd(0);
            return ScriptToken(TokenKind::Expression,
                               std::make_unique<Uip_StringLiteral_ParseNode>(m.captured(1)));
        }
        case u'(':
            ++mPos;
            return ScriptToken(TokenKind::OpenParen);
        case u')':
            ++mPos;
            return ScriptToken(TokenKind::CloseParen);
        case u';':
            ++mPos;
            return ScriptToken(TokenKind::Semicolon);
        case u'=':
            ++mPos;
            return ScriptToken(TokenKind::AssignOp);
        default:
            return ScriptToken(TokenKind::Unknown);
        }
    }

private:
    // A non-empty match that starts exactly at the read position; anything else counts as no
    // match. Matching past the trimmed end can only take trailing blanks, which are discarded.
    QRegularExpressionMatch matchHere(const QRegularExpression &iPattern) const
    {
        QRegularExpressionMatch m = iPattern.match(mText, mPos, QRegularExpression::NormalMatch,
                                                   QRegularExpression::AnchorAtOffsetMatchOption);
        if (m.hasMatch() && (m.capturedStart(0) != mPos || m.capturedLength(0) == 0))
            return QRegularExpressionMatch();
        return m;
    }

    QString mText;
    qsizetype mPos = 0;
    qsizetype mEnd;
};

// ---------------------------------------------------------------------------------------------
// Call stage: a first token, optionally followed by one argument list.

class CallStage
{
public:
    Uip_ParseError feed(ScriptToken iToken)
    {
        switch (iToken.kind) {
        case TokenKind::End:
            return Uip_ParseError();
        case TokenKind::ArgumentList:
            if (mState != 1)
                return makeError("No function before argument list");
            mArguments = std::move(iToken);
            mState = 2;
            return Uip_ParseError();
        default:
            if (mState != 0)
                return makeError("unexpected");
            mFirst = std::move(iToken);
            mState = 1;
            return Uip_ParseError();
        }
    }

    Uip_ParseError build(ScriptToken &oResult)
    {
        switch (mState) {
        case 0:
            oResult = ScriptToken(TokenKind::None);
            return Uip_ParseError();
        case 1:
            oResult = std::move(mFirst);
            return Uip_ParseError();
        default:
            if (mFirst.kind != TokenKind::Expression)
                return makeError("Not a callable function");
            oResult = ScriptToken(TokenKind::Expression,
                                  std::make_unique<Uip_FunctionCall_ParseNode>(
                                      std::move(mFirst.nodeP), std::move(mArguments.nodeP)));
            return Uip_ParseError();
        }
    }

private:
    int mState = 0; // 0: empty, 1: first token, 2: first token and argument list
    ScriptToken mFirst;
    ScriptToken mArguments;
};

// ---------------------------------------------------------------------------------------------
// Assignment stage: a left call stage and, after "=", a nested assignment stage for the right
// side, so that `A = B = C` nests to the right.

class AssignStage
{
public:
    Uip_ParseError feed(ScriptToken iToken)
    {
        if (mRightP)
            return mRightP->feed(std::move(iToken));
        if (iToken.kind != TokenKind::AssignOp)
            return mLeft.feed(std::move(iToken));
        Uip_ParseError error = mLeft.feed(ScriptToken(TokenKind::End));
        if (error.IsError())
            return error;
        mRightP = std::make_unique<AssignStage>();
        return Uip_ParseError();
    }

    Uip_ParseError build(ScriptToken &oResult)
    {
        if (!mRightP)
            return mLeft.build(oResult);
        ScriptToken left;
        Uip_ParseError error = mLeft.build(left);
        if (error.IsError())
            return error;
        ScriptToken right;
        error = mRightP->build(right);
        if (error.IsError())
            return error;
        if (left.kind != TokenKind::Expression)
            return makeError("No expression on left side of assignment");
        if (right.kind != TokenKind::Expression)
            return makeError("No expression on right side of assignment");
        oResult = ScriptToken(
            TokenKind::Expression,
            std::make_unique<Uip_Assign_ParseNode>(std::move(left.nodeP), std::move(right.nodeP)));
        return Uip_ParseError();
    }

private:
    CallStage mLeft;
    std::unique_ptr<AssignStage> mRightP;
};

// ---------------------------------------------------------------------------------------------
// The content of one pair of parentheses: at most one expression.

class ArgumentSlot
{
public:
    Uip_ParseError feed(ScriptToken iToken)
    {
        switch (iToken.kind) {
        case TokenKind::End:
            return Uip_ParseError();
        case TokenKind::Expression:
            if (mArgumentP)
                return makeError("Multiple arguments not supported yet");
            mArgumentP = std::move(iToken.nodeP);
            return Uip_ParseError();
        default:
            return makeError("Unknown token in parenthesis");
        }
    }

    std::unique_ptr<Uip_ParseNode> takeArgument() { return std::move(mArgumentP); }

private:
    std::unique_ptr<Uip_ParseNode> mArgumentP;
};

// ---------------------------------------------------------------------------------------------
// Parenthesis stage: turns "(", content, ")" into one ArgumentList token for the assignment
// stage; parentheses do not nest.

class ParenStage
{
public:
    Uip_ParseError feed(ScriptToken iToken)
    {
        switch (iToken.kind) {
        case TokenKind::OpenParen:
            if (mDepth == 0) {
                mDepth = 1;
                mSlotP = std::make_unique<ArgumentSlot>();
                return Uip_ParseError();
            }
            ++mDepth;
            return mSlotP->feed(std::move(iToken));
        case TokenKind::CloseParen: {
            if (mDepth == 0)
                return makeError("Unmatched close paren");
            if (--mDepth > 0)
                return mSlotP->feed(std::move(iToken));
            Uip_ParseError error = mSlotP->feed(ScriptToken(TokenKind::End));
            if (error.IsError())
                return error;
            ScriptToken arguments(TokenKind::ArgumentList, mSlotP->takeArgument());
            mSlotP.reset();
            return mAssign.feed(std::move(arguments));
        }
        case TokenKind::End:
            if (mDepth > 0)
                return makeError("Unmatched open paren");
            return mAssign.feed(std::move(iToken));
        default:
            if (mDepth > 0)
                return mSlotP->feed(std::move(iToken));
            return mAssign.feed(std::move(iToken));
        }
    }

    Uip_ParseError build(ScriptToken &oResult) { return mAssign.build(oResult); }

private:
    int mDepth = 0;
    std::unique_ptr<ArgumentSlot> mSlotP;
    AssignStage mAssign;
};

// ---------------------------------------------------------------------------------------------
// Statement stage: the finished statements and the statement being read.

class StatementStage
{
public:
    Uip_ParseError feed(ScriptToken iToken)
    {
        if (iToken.kind != TokenKind::Semicolon && iToken.kind != TokenKind::End) {
            if (!mOpenP)
                mOpenP = std::make_unique<ParenStage>();
            return mOpenP->feed(std::move(iToken));
        }
        if (!mOpenP)
            return Uip_ParseError(); // empty statement
        const std::unique_ptr<ParenStage> open = std::move(mOpenP);
        Uip_ParseError error = open->feed(ScriptToken(TokenKind::End));
        if (error.IsError())
            return error;
        ScriptToken statement(TokenKind::None);
        error = open->build(statement);
        if (error.IsError())
            return error;
        if (statement.kind != TokenKind::Expression || !statement.nodeP)
            return makeError("Not a statement");
        mStatements.push_back(std::move(statement.nodeP));
        return Uip_ParseError();
    }

    std::unique_ptr<Uip_ParseNode> takeBlock()
    {
        return std::make_unique<Uip_StatementBlock_ParseNode>(std::move(mStatements));
    }

private:
    std::vector<std::unique_ptr<Uip_ParseNode>> mStatements;
    std::unique_ptr<ParenStage> mOpenP;
};

} // namespace

std::unique_ptr<Uip_ParseNode> Uip_ParseScript(QString iScript, Uip_ParseError *oError)
{
    ScriptTokenizer tokenizer(std::move(iScript));
    StatementStage statements;
    for (;;) {
        ScriptToken token = tokenizer.next();
        const bool isEnd = token.kind == TokenKind::End;
        Uip_ParseError error = statements.feed(std::move(token));
        if (error.IsError()) {
            if (oError)
                *oError = std::move(error);
            return nullptr;
        }
        if (isEnd)
            break;
    }
    std::unique_ptr<Uip_ParseNode> block = statements.takeBlock();
    if (!block) {
        if (oError)
            *oError = makeError("Script is not an expression");
        return nullptr;
    }
    if (oError)
        *oError = Uip_ParseError();
    return block;
}
