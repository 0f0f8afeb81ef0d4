#pragma once

#include "platform/RuntimeFailure.h"

#include <QObject>
#include <functional>
#include <tuple>
#include <type_traits>
#include <utility>

namespace quorvik
{

/**
 * The one place where a RuntimeFailure ends. Every handler of ours is entered through Guarded() or, for a
 * signal, through On(); what the handler raises is told by the reporter, and the event loop never sees it.
 */
using FailureReporter = std::function<void(const RuntimeFailure &)>;

/** Installs who tells the user of a failure. Called once by the program's start; tests install a recorder. */
void SetFailureReporter(FailureReporter reporter);

/** Tells the user of a failure through the installed reporter. */
void ReportFailure(const RuntimeFailure &failure);

/** Runs handler; a RuntimeFailure it raises is reported. @return whether it ran to its end. */
template<typename Handler> bool Guarded(Handler &&handler)
{
    try {
        std::forward<Handler>(handler)();
        return true;
    } catch (const RuntimeFailure &failure) {
        ReportFailure(failure);
        return false;
    }
}

/**
 * The guard of a handler that a timer repeats: a failure is told once, and again only after a tick went
 * through. A tick that comes while the failure of the last one is still being told does not tell again.
 */
class TickGuard
{
public:
    template<typename Handler> void Run(Handler &&handler)
    {
        try {
            std::forward<Handler>(handler)();
            told_ = false;
        } catch (const RuntimeFailure &failure) {
            if (!std::exchange(told_, true))
                ReportFailure(failure);
        }
    }

private:
    bool told_ = false;
};

/** Connects a signal to a handler of ours, which may take fewer arguments than the signal has, through the
 * guard. */
template<typename Sender, typename Signal, typename Handler>
QMetaObject::Connection On(Sender *sender, Signal signal, QObject *context, Handler handler);

namespace detail
{

template<typename Handler, typename... Arguments> struct GuardedCall {
    Handler handler;
    void operator()(Arguments... arguments)
    {
        Guarded([&] {
            if constexpr (std::is_invocable_v<Handler &, Arguments...>)
                handler(arguments...);
            else if constexpr (sizeof...(Arguments) > 0 && !std::is_invocable_v<Handler &>)
                handler(std::get<0>(std::tie(arguments...)));
            else
                handler();
        });
    }
};

template<typename Sender, typename Class, typename... Arguments, typename Handler>
QMetaObject::Connection Connect(Sender *sender, void (Class::*signal)(Arguments...), QObject *context,
                                Handler handler)
{
    return QObject::connect(sender, signal, context,
                            GuardedCall<Handler, std::decay_t<Arguments>...>{std::move(handler)});
}

} // namespace detail

template<typename Sender, typename Signal, typename Handler>
QMetaObject::Connection On(Sender *sender, Signal signal, QObject *context, Handler handler)
{
    return detail::Connect(sender, signal, context, std::move(handler));
}

} // namespace quorvik
