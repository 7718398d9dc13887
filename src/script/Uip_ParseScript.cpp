// The action-script parser: a tokenizer and four nested stages (statements, parentheses,
// assignment, call). Each stage takes one token at a time; the first error ends the parse and
// the partly built nodes go with the stages that own them.

#include "Uip_ParseScript.h"

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
// An Unknown token consumes nothing, so it comes again on the next call. Every token is read
// by one forward scan from the read position, so tokenizing costs time linear in the script.

class ScriptTokenizer
{
public:
    explicit ScriptTokenizer(QString iScript)
        : mText(std::move(iScript))
        , mEnd(mText.size())
    {
        while (mEnd > 0 && mText.at(mEnd - 1).isSpace())
            --mEnd;
        // Text that is not valid UTF-16 matches no literal or name: while such a character is
        // still ahead, those tokens read as Unknown.
        for (qsizetype i = 0; i < mEnd; ++i) {
            const QChar c = mText.at(i);
            if (c.isHighSurrogate() && i + 1 < mText.size() && mText.at(i + 1).isLowSurrogate())
                ++i;
            else if (c.isSurrogate())
                mLastInvalid = i;
        }
    }

    ScriptToken next()
    {
        while (mPos < mEnd && mText.at(mPos).isSpace())
            ++mPos;
        if (mPos >= mEnd)
            return ScriptToken(TokenKind::End);

        const QStringView rest = QStringView(mText).mid(mPos, mEnd - mPos);
        const bool validAhead = mPos > mLastInvalid;
        if (!validAhead
            && (rest.startsWith(u"false") || rest.startsWith(u"true") || rest.front().isLetter()
                || rest.front() == u'$' || rest.front() == u'"'))
            return ScriptToken(TokenKind::Unknown);
        if (rest.startsWith(u"false") || rest.startsWith(u"true")) {
            // A boolean literal takes the rest of the line with it (up to a line feed).
            const bool value = rest.startsWith(u"true");
            const qsizetype lineEnd = mText.indexOf(QLatin1Char('\n'), mPos);
            mPos = lineEnd < 0 || lineEnd > mEnd ? mEnd : lineEnd;
            return ScriptToken(TokenKind::Expression,
                               std::make_unique<Uip_BooleanLiteral_ParseNode>(value));
        }

        const QChar first = rest.front();
        if (first.isLetter() || first == QLatin1Char('$')) {
            // Names take ASCII word characters and . $ [ ] : (a letter outside ASCII may start
            // the test above but is no name character, so such a name reads as Unknown).
            qsizetype end = mPos;
            while (end < mEnd && isNameCharacter(mText.at(end)))
                ++end;
            if (end == mPos)
                return ScriptToken(TokenKind::Unknown);
            const QString name = mText.mid(mPos, end - mPos);
            mPos = end;
            return ScriptToken(TokenKind::Expression,
                               std::make_unique<Uip_Identifier_ParseNode>(name));
        }

        switch (first.unicode()) {
        case u'"': {
            // No escapes: the text runs to the next double quote. Without one the literal is
            // unterminated.
            const qsizetype close = mText.indexOf(QLatin1Char('"'), mPos + 1);
            if (close < 0 || close >= mEnd)
                return ScriptToken(TokenKind::Unknown);
            const QString value = mText.mid(mPos + 1, close - mPos - 1);
            mPos = close + 1;
            return ScriptToken(TokenKind::Expression,
                               std::make_unique<Uip_StringLiteral_ParseNode>(value));
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
    static bool isNameCharacter(QChar c)
    {
        const char16_t u = c.unicode();
        return (u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z') || (u >= u'0' && u <= u'9')
            || u == u'_' || u == u'.' || u == u'$' || u == u'[' || u == u']' || u == u':';
    }

    QString mText;
    qsizetype mPos = 0;
    qsizetype mEnd;
    qsizetype mLastInvalid = -1; // the last unpaired surrogate
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
// Assignment stage: the sides of `A = B = C`, one call stage each, in order. Tokens go to the
// last side; "=" closes it and opens the next. The tree nests to the right: Assign(A,
// Assign(B, C)). The sides are kept in a flat list, so a long chain costs neither stack nor
// time per token.

class AssignStage
{
public:
    AssignStage() { mSides.emplace_back(); }

    Uip_ParseError feed(ScriptToken iToken)
    {
        if (iToken.kind != TokenKind::AssignOp)
            return mSides.back().feed(std::move(iToken));
        Uip_ParseError error = mSides.back().feed(ScriptToken(TokenKind::End));
        if (error.IsError())
            return error;
        mSides.emplace_back();
        return Uip_ParseError();
    }

    // Builds every side from the left, then checks them from the innermost assignment out:
    // the last "=" needs an expression on both sides, each earlier one on its left.
    Uip_ParseError build(ScriptToken &oResult)
    {
        std::vector<ScriptToken> sides(mSides.size());
        for (size_t i = 0; i < mSides.size(); ++i) {
            Uip_ParseError error = mSides[i].build(sides[i]);
            if (error.IsError())
                return error;
        }
        if (sides.size() == 1) {
            oResult = std::move(sides.front());
            return Uip_ParseError();
        }
        std::unique_ptr<Uip_ParseNode> right;
        for (size_t i = sides.size() - 1; i-- > 0;) {
            if (sides[i].kind != TokenKind::Expression)
                return makeError("No expression on left side of assignment");
            if (!right) {
                if (sides.back().kind != TokenKind::Expression)
                    return makeError("No expression on right side of assignment");
                right = std::move(sides.back().nodeP);
            }
            right = std::make_unique<Uip_Assign_ParseNode>(std::move(sides[i].nodeP),
                                                           std::move(right));
        }
        oResult = ScriptToken(TokenKind::Expression, std::move(right));
        return Uip_ParseError();
    }

private:
    std::vector<CallStage> mSides;
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
