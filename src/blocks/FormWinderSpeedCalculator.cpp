#include "blocks/BlockSheet.h"

#include <algorithm>

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {
    WinderCore, WinderLineSpeed, WinderDiameterRatio, WinderDiameter, {WinderSpeed, "Winder Speed"}};

class WinderSpeedCalculatorSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        const QPointF centre(26, 22);
        const double radius = 16;
        const double core = 5;
        DrawWinder(d, centre, radius, core);

        const double boxX = 52;
        const double webY = centre.y() - radius;
        const double rimY = centre.y() + radius * 0.7;
        const Shape speed = Box(WinderLineSpeed, {boxX, webY});
        const Shape coreBox = Box(WinderCore, {boxX, centre.y()});
        const Shape diameter = Box(WinderDiameter, {boxX, rimY}, CaptionAt::Below);
        d.Guide({{centre.x() + 1, webY}, Side::Right}, speed.Left());
        d.Guide({{centre.x() + core, centre.y()}, Side::Right}, coreBox.Left());
        d.Guide({{centre.x() + radius * 0.714, rimY}, Side::Right}, diameter.Left());

        const double y = (centre.y() + rimY) / 2;
        const Shape ratio =
            d.Function({boxX + 19, y}, {11, 16}, QStringLiteral("Ratio"), QStringLiteral("LabelRatio"));
        const Shape ratioBox = Box(WinderDiameterRatio, {boxX + 35, y});
        const Shape product = d.Multiplier({boxX + 56, y});
        d.Wire(coreBox.Right(), ratio.LeftAt(centre.y()));
        d.Wire(diameter.Right(), ratio.LeftAt(rimY));
        d.Chain({ratio, ratioBox, product});
        d.Gives(ratio, [](const NetInputs &inputs) {
            const std::optional<double> coreSize = inputs.On(Side::Left, 0);
            const std::optional<double> roll = inputs.On(Side::Left, 1);
            if (!coreSize || !roll)
                return std::optional<double>();
            // No roll is thinner than its core, and no core is none at all.
            constexpr double thinnest = 0.01;
            const double bare = std::max(*coreSize, thinnest);
            return std::optional(100 * bare / std::max(*roll, bare));
        });
        d.Wire(speed.Right(), product.Top());
        LastBox(d, product.Right(), WinderSpeed, {boxX + 63, y});
    }

private:
    /** The web comes over a roller and is wound on the core. */
    static void DrawWinder(Drawing &d, const QPointF &centre, double radius, double core)
    {
        const double webY = centre.y() - radius;
        const double roller = 2.5;
        d.Roll(centre, radius, core);
        d.Roll({-2, webY + roller}, roller, roller);
        d.Stroke({QPointF(-2 - roller, centre.y()), QPointF(-2 - roller, webY + roller)}, false);
        d.Stroke({QPointF(-2, webY), QPointF(centre.x(), webY)}, true);
    }
};

} // namespace

constexpr BlockDescriptor BlockWinderSpeedCalculator = {.form = "FormWinderSpeedCalculator",
                                                        .window = "Winder Speed Calculator",
                                                        .helpTopic = "Winder Speed Calculator.htm",
                                                        .rows = Rows,
                                                        .prefix = "Winder ",
                                                        .sheet = MakeSheet<WinderSpeedCalculatorSheet>};

} // namespace quorvik
