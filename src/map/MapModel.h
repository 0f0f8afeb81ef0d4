#pragma once

#include "circuit/Circuit.h"
#include "map/MapCards.h"

#include <QSet>
#include <QStringList>
#include <set>
#include <vector>

namespace quorvik
{

class ParameterTable;
class ValueStates;
enum class ValueState : std::uint8_t;

/** What a row shows now. */
struct MapRow {
    QString caption;
    QString value;
    int param = -1; ///< whose value it is, -1 for none
    ValueState state = {};

    bool operator==(const MapRow &) const = default;
};

/** A wire between two cards; signals that take the same way share one. */
struct MapWire {
    int from = -1; ///< indexes of cards
    int to = -1;
    int fromRow = -1; ///< the row that it leaves or reaches, -1 for none
    int toRow = -1;
    bool isLink = false;
    std::vector<int> params;    ///< what goes along; of links the parameter at the other end
    std::vector<int> intoNodes; ///< of the circuit: where the signals come out
    QStringList words;          ///< for the tool tip, one for each signal

    bool operator==(const MapWire &) const = default;
};

/** What keeps a signal from passing. */
struct MapMark {
    enum class Kind : std::uint8_t { Blocked, Limited };
    Kind kind = Kind::Blocked;
    int card = -1;
    QString words; ///< a sentence

    bool operator==(const MapMark &) const = default;
};

/** Cards and wires on the way of a signal. */
struct MapPath {
    std::vector<bool> cards;
    std::vector<bool> wires;

    bool operator==(const MapPath &) const = default;
};

/**
 * What the map of the drive shows, with no place in it: rows and their values, the wires between the cards,
 * which come from the circuit, and what stands in the way of the main signal. It needs no window.
 */
class MapModel
{
public:
    MapModel(const ParameterTable &table, const ValueStates &states);

    /** Brings all up to table and circuit. @return whether the wires are other ones than before. */
    bool Follow(const Circuit &circuit);

    static int CardCount() { return int(MapCards().size()); }
    static int FindCard(const QString &title);
    /** The card of a block's window, or -1; row takes the member of a family. */
    static int CardOfWindow(const QString &window, int *row = nullptr);
    /** The card of a parameter: where it is a row, else where it is made, else where it stands; -1 none. */
    int CardOf(const Circuit &circuit, int p, int *row = nullptr) const;

    const std::vector<MapRow> &Rows(int card) const { return rows_[std::size_t(card)]; }
    const std::vector<MapWire> &Wires() const { return wires_; }
    const std::vector<MapMark> &Marks() const { return marks_; }
    /** The marks of a card, sentence by sentence. */
    QStringList MarkWords(int card) const;
    /** All parameters whose values are needed: rows, selectors, and what marks hang on. */
    std::set<int> Interest() const;

    /** The way of a card's signals; of one row only where that is given. */
    MapPath PathOf(const Circuit &circuit, int card, int row = -1) const;
    /** A row in full: number and name, value, and how old it is. */
    QString Words(int card, int row) const;
    /** What a card is, in a sentence for a reader: title, rows, where from and where to, marks. */
    QString Describe(int card) const;

private:
    QSet<int> SignalsOf(int card, int row) const;
    MapRow RowOf(const CardRow &row) const;
    void FollowRows();
    void FollowWires(const Circuit &circuit);
    void AddDrawnWires(const Circuit &circuit);
    void AddDrawn(const Circuit &circuit, int p);
    void AddLinks(const Circuit &circuit);
    void AddMachineWires();
    MapWire *AddWire(int from, int to, bool isLink);
    void AddSignal(MapWire *wire, int p, const QString &words, int intoNode = -1) const;
    int RowShowing(int card, int p) const;

    const ParameterTable &table_;
    const ValueStates &states_;
    std::vector<std::vector<MapRow>> rows_;
    std::vector<MapWire> wires_;
    std::vector<MapMark> marks_;
};

/** What stands in the way from the reference to the motor. */
std::vector<MapMark> FindMarks(const Circuit &circuit, const ParameterTable &table);
/** The parameters that those hang on. */
std::span<const int> MarkInterest();

} // namespace quorvik
