#pragma once

#include "tour/Tour.h"

namespace quorvik
{

class ValueBox;

/** Limits of a shown number, in the units of its box. */
struct Span {
    double low = 0;
    double high = 0;
};

/** The command to the simulated drive that puts an analog input to a level, in percent of full scale. */
QString Analog(int member, double percent);
/** The one that opens or closes a digital input. */
QString Contact(int member, bool isClosed);

/** The steps of which a walk through a procedure of the help is made. */
class Walk
{
public:
    explicit Walk(Tour &tour)
        : tour_(tour)
    {
    }

    /** A command to the simulated drive: what hands at the machine would do. */
    void AtDrive(const QString &what, const QStringList &commands);
    /** Opens a block by its menu entry; several of them stay open side by side. */
    void Open(const QString &entry, const QString &caption);
    void Close(const QString &caption);
    /** Clicks a control of a window that stands in the frame, or of the modal one, once it can be clicked. */
    void Click(const QString &caption, const QString &control);
    /** Clicks a box of an open block, enters a text or chooses it from the list, and waits until the drive
     * holds it. */
    void Enter(const QString &caption, int p, const QString &text, std::int32_t rawValue);
    /** Waits until a box has shown a number within the span for a while. */
    void See(const QString &caption, int p, Span span);
    /** Waits until a box shows a text. */
    void SeeText(const QString &caption, int p, const QString &shownText);
    /** Waits until the status bar says a drive state. */
    void SeeState(const QString &stateText);
    /** The start input is pushed, and the status bar says Run. */
    void Start();
    /** The stop input opens, and the status bar says Stop. */
    void Stop();
    void Picture(const QString &name);

    /** The box of a parameter in an open block; nothing where it is not there. */
    static ValueBox *BoxIn(Tour &tour, const QString &caption, int p);

private:
    Tour &tour_;
};

} // namespace quorvik
