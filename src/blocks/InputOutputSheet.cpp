#include "blocks/InputOutputSheet.h"

namespace quorvik
{

namespace
{

/** Holds a bipolar input within its gain on both sides, without bias; joins a unipolar one's bias and gain by
 * a straight line. A curve that no polarity enters is unipolar. */
std::optional<double> Calibrated(const NetInputs &inputs)
{
    const auto x = inputs.On(Side::Left, 1);
    const auto low = inputs.On(Side::Bottom, 0);
    const auto high = inputs.On(Side::Bottom, 1);
    const auto bias = inputs.On(Side::Top, 0);
    const auto gain = inputs.On(Side::Top, 1);
    const bool hasPolarity = x.has_value();
    const auto status = hasPolarity ? x : inputs.On(Side::Left, 0);
    if (!status || !low || !high || !bias || !gain)
        return std::nullopt;
    // The polarity enters above the signal.
    if (hasPolarity && inputs.On(Side::Left, 0) != 0.0) {
        if (*status >= *high)
            return *gain;
        if (*status <= -*high)
            return -*gain;
        return *high == *low ? std::nullopt : std::optional((*status - *low) / (*high - *low) * *gain);
    }
    if (*status < *low)
        return *bias;
    if (*status > *high || *high == *low)
        return *gain;
    return (*status - *low) / (*high - *low) * (*gain - *bias) + *bias;
}

} // namespace

void InputOutputSheet::DestinationEnd(Drawing &d, const Port &from, int selectorRow, double left,
                                      double perCount)
{
    const double y = from.at.y();
    const Shape selector = Box(selectorRow, {left, y + RowAbove});
    const Shape linked = Box(LinkedRow, {left, y});
    d.SetScale(linked, perCount);
    d.Wire(from, linked.Left());
    d.Guide(selector.Bottom(), {selector.Bottom().at + QPointF(0, 7), Side::Top, linked.Node()});
    d.Wire(linked.Right(), {linked.Right().at + QPointF(5, 0), Side::Left});
}

Shape InputOutputSheet::SourceEnd(Drawing &d, int selectorRow, double y)
{
    const Shape selector = Box(selectorRow, {0, y + RowAbove});
    const Shape linked = Box(LinkedRow, {0, y});
    d.SetScale(linked, PercentPerCount);
    d.Guide(selector.Bottom(), {selector.Bottom().at + QPointF(0, 7), Side::Top, linked.Node()});
    return linked;
}

Shape InputOutputSheet::CalibrationStage(Drawing &d, const QPointF &left, int lowRow, int highRow,
                                         int biasRow, int gainRow, const QString &curveName)
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
    d.Gives(curve, Calibrated);
    return curve;
}

LivePart InputOutputSheet::OptionalStage(Drawing &d, const Port &from, const QPointF &branch, Stage stage,
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
    d.Path(dot, {{branch.x(), y - rise}}, arm.Contact(PassedBy), false);
    d.Path(dot, {{branch.x(), y + rise}}, element.Left(), true);
    d.Line(element.Right(), arm.Contact(SwitchedIn));
    const double middle = (contactX + branch.x() + StageWidth) / 2;
    d.Link(Box(row, {middle - BoxSize(row).width() / 2, y + RowBelow}, captionAt).Top(), arm);
    return arm;
}

} // namespace quorvik
