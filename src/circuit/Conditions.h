#pragma once

#include "circuit/SignalWalk.h"
#include "circuit/ValueSources.h"

#include <QString>
#include <functional>
#include <vector>

namespace quorvik
{

class ParameterTable;

/** Per cent below which a value counts as none: what the noise at an input alone makes of nothing. */
inline constexpr double LeastPercent = 0.1;

/** Per cent of the speed at which a motor is seen to turn, whatever counts as zero. */
inline constexpr double SeenTurning = 1;

/** How a condition stands. */
enum class Verdict : std::uint8_t {
    Met,
    Blocks,  ///< what is asked for does not come because of it
    Waits,   ///< not as it should be, as follows from a condition before it
    Unknown, ///< its value is not known at present
};

/** What must hold of one parameter before a signal gets through. */
struct Condition {
    int param = -1;
    QString block = {};     ///< caption of the window in which it was met
    QString expected = {};  ///< "must be True"; empty for a choice, which only leads the way
    QString valueText = {}; ///< what it has, as the program shows it
    Verdict verdict = Verdict::Met;
    QString source = {}; ///< where the value comes from: "digital input 3 is its source and reads Open"
    QString remedy = {}; ///< a sentence; empty where it is met
};

/** What is known beside the table while conditions are looked for. */
struct ConditionsGiven {
    /** Whether a drive works on the values. Without one, what a drive would compute follows from the nets. */
    bool isOnLine = false;
    /** Whether the table has what the drive has, for a parameter; empty for all. */
    std::function<bool(int p)> isKnown = {};
};

/** What a signal is wanted to be. */
enum class Wanted : std::uint8_t { True, False, NotZero };

/**
 * Walks the circuit backwards from a result, and notes on the way back what each value, gate, switch, limit
 * and ramp asks for, so that the conditions stand in the order of the signal. A parameter stands once.
 */
class Conditions
{
public:
    /** @param circuit as of its last Follow(). All must outlive it. */
    Conditions(const Circuit &circuit, const ParameterTable &table, const ConditionsGiven &given);

    /** Appends what must hold so that a parameter becomes what is wanted. */
    void Walk(int p, Wanted wanted);
    /** Appends one condition, which the walk does not go through again. */
    void Add(Condition condition);
    /** A condition about a parameter, with its value and its source, met. */
    Condition Of(int p, const QString &expected) const;
    /** The same with a verdict and a remedy where it does not hold, unknown where its value is not. */
    Condition Of(int p, const QString &expected, bool holds, const QString &remedy) const;

    const std::vector<Condition> &All() const { return found_; }
    bool HasBlocked() const;

    /** What sets a parameter, with its reading where that is known. */
    ValueSource SourceOf(int p) const;
    /** Whether a value counts as none. */
    bool IsNothing(int p, double value) const;
    bool IsKnown(int p) const { return !given_.isKnown || given_.isKnown(p); }
    /** A value as the program shows it; faults and states by their names. */
    QString TextOf(int p) const;
    /** "(190) Forward Max Speed is 0.00 %". */
    QString Sentence(int p) const;

private:
    void Into(int node, Wanted wanted);
    void IntoValue(int p, Wanted wanted);
    void IntoGate(int node, Wanted wanted, bool needsAll);
    void IntoSwitch(int node, Wanted wanted);
    void IntoSum(int node, Wanted wanted);
    void IntoMemory(int node, Wanted wanted);
    void IntoController(int node);
    void AddChoice(int p);
    // What stands on the way through the loops; in LoopConditions.cpp.
    void AddLimits(int node);
    void AddRampTime();
    void AddGain(int input);
    void AddRegen(double asked);
    void Judge(int p, Wanted wanted);
    /** The choice that a parameter makes turns out to be what blocks. */
    void Block(int p);

    bool isUnderWay_ = false; ///< the motor turns as it is asked to
    SignalWalk walk_;
    const Circuit &circuit_;
    const ParameterTable &table_;
    const ConditionsGiven &given_;
    std::vector<Condition> found_;
    std::vector<int> seen_;    ///< parameters on the walk
    std::vector<int> outputs_; ///< parameters that the walk came through, the nearest last
};

} // namespace quorvik
