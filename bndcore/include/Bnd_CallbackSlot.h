#pragma once

#include <boost/function.hpp>

#include <memory>
#include <vector>

/// Holds the receive callback of a listener or model so that the callback may destroy its
/// owner, or replace itself, while it runs: the function being called is kept alive until the
/// call returns, and the caller learns that the owner is gone.
template<class Arg> class Bnd_CallbackSlot
{
public:
    typedef boost::function<void(const Arg &)> Function;

    Bnd_CallbackSlot() = default;
    Bnd_CallbackSlot(const Bnd_CallbackSlot &) = delete;
    Bnd_CallbackSlot &operator=(const Bnd_CallbackSlot &) = delete;
    ~Bnd_CallbackSlot()
    {
        for (Frame *f = mFrames; f; f = f->outer)
            f->destroyed = true;
        retire();
    }

    void set(const Function &iFunction)
    {
        retire();
        if (!iFunction.empty())
            mFunction.reset(new Function(iFunction));
    }
    bool empty() const { return !mFunction; }

    /// Calls the function (if any). Answers false when the slot was destroyed during the call;
    /// the caller must then not touch its owner.
    bool call(const Arg &iArg)
    {
        Function *f = mFunction.get();
        if (!f)
            return true;
        Frame frame { mFrames, false, {} };
        mFrames = &frame;
        (*f)(iArg);
        if (frame.destroyed)
            return false;
        mFrames = frame.outer;
        return true;
    }

private:
    struct Frame
    {
        Frame *outer;
        bool destroyed;
        std::vector<std::unique_ptr<Function>> keep; // functions retired while being called
    };

    // Lets go of the present function; while a call is running it is kept until the call ends.
    void retire()
    {
        if (mFrames && mFunction)
            mFrames->keep.push_back(std::move(mFunction));
        mFunction.reset();
    }

    std::unique_ptr<Function> mFunction;
    Frame *mFrames = nullptr;
};
