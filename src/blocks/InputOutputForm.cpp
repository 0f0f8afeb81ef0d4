#include "blocks/InputOutputForm.h"

namespace quorvik
{

void InputOutputForm::DestinationEnd(Drawing &d, const Port &from, int selectorRow, double left)
{
    const double y = from.at.y();
    const Shape selector = Box(selectorRow, {left, y + RowAbove});
    const Shape linked = Box(LinkedRow, {left, y});
    d.Wire(from, linked.Left());
    d.Guide(selector.Bottom(), {selector.Bottom().at + QPointF(0, 7), Side::Top});
    d.Wire(linked.Right(), {linked.Right().at + QPointF(5, 0), Side::Left});
}

Shape InputOutputForm::SourceEnd(Drawing &d, int selectorRow, double y)
{
    const Shape selector = Box(selectorRow, {0, y + RowAbove});
    const Shape linked = Box(LinkedRow, {0, y});
    d.Guide(selector.Bottom(), {selector.Bottom().at + QPointF(0, 7), Side::Top});
    return linked;
}

Shape InputOutputForm::CalibrationStage(Drawing &d, const QPointF &left, int lowRow, int highRow, int biasRow,
                                        int gainRow, const QString &curveName)
{
    const Shape curve = d.Curve(left, {20, 14}, curveName);
    const double y = left.y();
    const double lowX = left.x() + 3;
    const double highX = left.x() + 17;
    const double half = BoxSize(lowRow).width() / 2;
    const Shape low = Box(lowRow, {lowX - half, y + RowBelow}, CaptionAt::BelowRight);
    const Shape high = Box(highRow, {highX - half, y + RowBelow}, CaptionAt::Below);
    const Shape bias = Box(biasRow, {lowX - half, y + RowAbove});
    const Shape gain = Box(gainRow, {highX - half, y + RowAbove});
    d.Wire(low.Top(), curve.BottomAt(lowX));
    d.Wire(high.Top(), curve.BottomAt(highX));
    d.Wire(bias.Bottom(), curve.TopAt(lowX));
    d.Wire(gain.Bottom(), curve.TopAt(highX));
    return curve;
}

LivePart InputOutputForm::OptionalStage(Drawing &d, const Port &from, const QPointF &branch, Stage stage,
                                        int row, const QString &armName, CaptionAt captionAt,
                                        const QString &labelName)
{
    const double y = branch.y();
    const double rise = 4;
    // A wire that comes from above meets the upper way first.
    const Port dot = d.Dot(from.side == Side::Bottom ? branch - QPointF(0, rise) : branch);
    const QPointF elementLeft(branch.x() + 3.5, y + rise);
    const auto draw = [&] {
        switch (stage) {
        case Stage::Negate:
            return d.Gain(elementLeft, QStringLiteral("-1"));
        case Stage::Not:
            return d.Inverter(elementLeft);
        case Stage::Absolute:
            return d.Absolute(elementLeft, labelName);
        }
        return Shape();
    };
    const Shape element = draw();
    const double contactX = branch.x() + 13;
    const LivePart arm =
        d.Switch(armName, {branch.x() + StageWidth, y}, {{contactX, y - rise}, {contactX, y + rise}});
    d.Line(from, dot);
    d.Path({{dot.at, {branch.x(), y - rise}, arm.Contact(PassedBy).at}}, false);
    d.Path({{dot.at, {branch.x(), y + rise}, element.Left().at}}, true);
    d.Line(element.Right(), arm.Contact(SwitchedIn));
    const double middle = (contactX + branch.x() + StageWidth) / 2;
    d.Link(Box(row, {middle - BoxSize(row).width() / 2, y + RowBelow}, captionAt).Top(), arm);
    return arm;
}

} // namespace quorvik
