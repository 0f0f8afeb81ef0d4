#pragma once

#include <QObject>

namespace quorvik
{

/**
 * Tells when the process is asked to end from outside, as by a logout, a closed terminal or "kill". A second
 * request ends it at once. One for the whole run.
 */
class Termination : public QObject
{
    Q_OBJECT

public:
    Termination();

Q_SIGNALS:
    /** Comes through the event loop, nested ones included. */
    void Requested();
};

} // namespace quorvik
