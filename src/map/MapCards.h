#pragma once

#include <cstdint>
#include <span>

namespace quorvik
{

/** What a card's block is for; cards of a group have one colour. */
enum class CardGroup : std::uint8_t { Terminals, References, Loops, Logic, Service, Machine };

/** What a row of a card shows. */
enum class CardRowKind : std::uint8_t {
    Value,   ///< the parameter
    Faults,  ///< the names of the parameter's faults
    OnOff,   ///< whether a relay is drawn
    Linked,  ///< the parameter that a selector points at, after the row's caption; of a family, a member
    Links,   ///< how many of the internal links are in use, from the parameter on
    Clock,   ///< hours and minutes, from the parameter of the minutes on
    Caption, ///< a caption and no value
};

struct CardRow {
    const char *caption;
    CardRowKind kind = CardRowKind::Value;
    int param = -1;    ///< of Linked: what is shown, -1 for the linked parameter itself
    int selector = -1; ///< of Linked and OnOff
};

/** A card of the map. Place and rows are chosen by hand. */
struct MapCard {
    const char *title;
    const char *form; ///< of its block, as BlockDescriptor::form; empty for the motor
    CardGroup group;
    int column; ///< from 0, the inputs, to the last one, the outputs
    int band;   ///< from above; in first and last column only the order counts
    std::span<const CardRow> rows;
    /** Its rows are made in other blocks, and merely shown here. */
    bool isMirror = false;
};

inline constexpr int MapColumns = 7;
inline constexpr int MapBands = 5;

std::span<const MapCard> MapCards();

/** Wires that no block draws, because they run through the machine or inside the drive. */
struct MachineWire {
    const char *from; ///< titles of cards
    const char *to;
    int param;         ///< what goes along
    const char *words; ///< for the tool tip
};

std::span<const MachineWire> MachineWires();

} // namespace quorvik
