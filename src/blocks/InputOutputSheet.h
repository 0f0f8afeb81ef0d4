#pragma once

#include "blocks/BlockSheet.h"

namespace quorvik
{

/**
 * What the windows of the drive's inputs and outputs share: the end of the path where another parameter is
 * selected, and the stages that several of them have.
 */
class InputOutputSheet : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    /** What inputs and outputs take a count for: all parameters count to 10000 at full scale. */
    static constexpr double PercentPerCount = 0.01;
    /** Height of a row that acts on the path, above or below it. */
    static constexpr double RowAbove = -13;
    static constexpr double RowBelow = 13;

    /** The right end of an input: the parameter driven, and above it the row that selects it. */
    /** @param perCount what a count of the driven parameter stands for on the wire, whatever its unit. */
    void DestinationEnd(Drawing &d, const Port &from, int selectorRow, double left,
                        double perCount = PercentPerCount);
    /** The left end of an output: the parameter shown, and above it the row that selects it. */
    Shape SourceEnd(Drawing &d, int selectorRow, double y);
    /** The line between two calibration points, with the rows that set its ends. */
    Shape CalibrationStage(Drawing &d, const QPointF &left, int lowRow, int highRow, int biasRow, int gainRow,
                           const QString &curveName = {});

    /** A stage that a row switches in or passes by: a branch through an element, and an arm. */
    enum class Stage { Negate, Not, Absolute };
    LivePart OptionalStage(Drawing &d, const Port &from, const QPointF &branch, Stage stage, int row,
                           const QString &armName, CaptionAt captionAt = CaptionAt::Below,
                           const QString &labelName = {});
    /** Width of an optional stage from its branch to its arm's pivot. */
    static constexpr double StageWidth = 20;
    /** Contacts of such an arm. */
    enum StageContact { PassedBy, SwitchedIn };
};

} // namespace quorvik
