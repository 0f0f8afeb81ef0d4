#include "blocks/InputOutputSheet.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {
    FreqDigitalOutSource,  FreqDigitalOutAbsoluteValue,
    FreqDigitalOutOnValue, FreqDigitalOutOffValue,
    FreqDigitalOutInvert,  FreqDigitalOutStatus,
    FreqDigitalOutMode,    FreqDigitalOutBias,
    FreqDigitalOutGain,    LinkedRow,
};

/** Hertz at 100 %. */
constexpr double FullFrequency = 2000;

enum ModeContact { Frequency, Digital };

class FreqDigOutputSheet final : public InputOutputSheet
{
public:
    using InputOutputSheet::InputOutputSheet;

protected:
    void Draw(Drawing &d) override
    {
        const double frequencyY = 12;
        const double middleY = 24;
        const double digitalY = 36;
        const Shape source = SourceEnd(d, FreqDigitalOutSource, middleY);
        const double x = source.Rect().right() + 5;
        const Port branch = d.Dot({x, middleY});
        d.Line(source.Right(), branch);

        const Shape magnitude = d.Absolute({x + 4, frequencyY});
        const Shape product = d.Multiplier({x + 22, frequencyY});
        const Shape sum = d.Sum({x + 37, frequencyY}, QStringLiteral("++"));
        d.Path(branch, {{x, frequencyY}}, magnitude.Left(), true);
        d.Wire(magnitude.Right(), product.Left());
        d.Wire(Box(FreqDigitalOutGain, {x + 16, frequencyY - 9}).Bottom(), product.Top());
        d.Wire(product.Right(), sum.Left());
        d.Wire(Box(FreqDigitalOutBias, {x + 31, frequencyY - 9}).Bottom(), sum.Top());

        absSwitch_ =
            OptionalStage(d, branch.To(Side::Bottom), {x, digitalY}, Stage::Absolute,
                          FreqDigitalOutAbsoluteValue, QStringLiteral("LineAbs"), CaptionAt::BelowRight);
        const double comparatorX = x + StageWidth + 7.5;
        const Shape comparator = d.Hysteresis({comparatorX, digitalY});
        const Shape on = Box(FreqDigitalOutOnValue, {comparatorX - 2, digitalY - 10});
        const Shape off =
            Box(FreqDigitalOutOffValue, {comparatorX - 2, digitalY + RowBelow}, CaptionAt::Below);
        // The points are held against the counts of what is selected, whatever their units.
        d.SetScale(on, PercentPerCount);
        d.SetScale(off, PercentPerCount);
        d.Wire(absSwitch_.Pivot(), comparator.Left());
        d.Wire(on.Bottom(), comparator.Top());
        d.Wire(off.Top(), comparator.Bottom());
        invertSwitch_ = OptionalStage(d, comparator.Right(), {comparatorX + 13, digitalY}, Stage::Not,
                                      FreqDigitalOutInvert, QStringLiteral("LineInvert"));

        const double modeX = invertSwitch_.Pivot().at.x() + 8;
        modeSwitch_ = d.Switch(QStringLiteral("LineSwitch"), {modeX + 8, middleY},
                               {{modeX, middleY - 4}, {modeX, middleY + 4}});
        const Shape hertz = d.TimesFactor({x + 42, frequencyY}, FullFrequency);
        d.Wire(sum.Right(), hertz.Left());
        d.Line(hertz.Right(), modeSwitch_.Contact(Frequency), modeX - 5);
        d.Line(invertSwitch_.Pivot(), modeSwitch_.Contact(Digital), modeX - 5);
        d.Link(Box(FreqDigitalOutMode, {modeX - 2, frequencyY - 9}).Bottom(), modeSwitch_);
        Click(QStringLiteral("Image1"), ClickArea::Gesture::DoubleClick, modeSwitch_.Area(),
              QStringLiteral("Double-click to change over between frequency and digital output"),
              {FreqDigitalOutMode}, [this] {
                  Write(FreqDigitalOutMode, RowText(FreqDigitalOutMode) != QStringLiteral("Digital") ? 1 : 0);
              });

        const Shape status = Box(FreqDigitalOutStatus, {modeX + 13, middleY});
        const Shape driver = d.Function({modeX + 30, middleY}, {10, 15}, QStringLiteral("Driver"));
        d.Wire(modeSwitch_.Pivot(), status.Left());
        d.Wire(status.Right(), driver.Left());
        const double terminalX = modeX + 46;
        const auto terminal = [&](int number, const QString &labelName, const QString &role, double y) {
            d.Line(driver.RightAt(y), d.Terminal({terminalX, y}, number, labelName, role).Left());
        };
        terminal(51, QStringLiteral("LabelPos"), QStringLiteral("Pos"), middleY - 5);
        terminal(52, QStringLiteral("LabelOutput"), QStringLiteral("Output"), middleY);
        terminal(53, QStringLiteral("LabelNegative"), QStringLiteral("Neg"), middleY + 5);
    }

    void Update() override
    {
        modeSwitch_.Set(RowText(FreqDigitalOutMode) == QStringLiteral("Digital") ? Digital : Frequency);
        absSwitch_.Set(RowValue(FreqDigitalOutAbsoluteValue) != 0 ? SwitchedIn : PassedBy);
        invertSwitch_.Set(RowValue(FreqDigitalOutInvert) == 1 ? SwitchedIn : PassedBy);
    }

private:
    LivePart absSwitch_;
    LivePart invertSwitch_;
    LivePart modeSwitch_;
};

} // namespace

constexpr BlockDescriptor BlockFreqDigOutput = {.form = "FormFreqDigOutput",
                                                .window = "Frequency/Digital Output",
                                                .helpTopic = "Frequency Digital Output.htm",
                                                .rows = Rows,
                                                .prefix = "Freq/Digital Out ",
                                                .sheet = MakeSheet<FreqDigOutputSheet>,
                                                .mentorStart = WizardIOStartRecord{.outputs = 1, .kind = 1},
                                                .mentorModeRow = FreqDigitalOutMode};

} // namespace quorvik
