#include "blocks/BlockSheet.h"

#include "platform/Arithmetic.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {ReferenceInvert, RefSelectMSB, RefSelectLSB, Reference0, Reference1,
                             Reference2,      Reference3,   JogReference, JogStatus,  RampInput};

constexpr int References = 4;

enum SignContact { AsIs, Inverted };
enum SourceContact { FromReference, FromJog };
enum EnableContact { Enabled, Disabled };

class SetpointsSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        DrawReferences(d);
        DrawSign(d);
        DrawSource(d);
        DrawEnable(d);
    }

    void Update() override
    {
        sourceSwitch_.Set(RowText(JogStatus) == QStringLiteral("False") ? FromReference : FromJog);
        enableSwitch_.Set(IsReferenceEnabled() ? Enabled : Disabled);
        const int selected = SelectedReference();
        referenceSwitch_.Set(selected < References ? selected : -1);
        signSwitch_.Set(RowText(ReferenceInvert) == QStringLiteral("True") ? Inverted : AsIs);
    }

private:
    static constexpr double ReferenceY = 16;
    static constexpr double JogY = 38;
    static constexpr double SourceY = 27;

    int SelectedReference() const { return int(CLng(2 * RowNumber(RefSelectMSB) + RowNumber(RefSelectLSB))); }

    void DrawReferences(Drawing &d)
    {
        constexpr double pitch = 7;
        constexpr double pivotX = 28;
        QList<QPointF> contacts;
        for (int i = 0; i < References; ++i)
            contacts.append({pivotX - 9, ReferenceY + (i - 1.5) * pitch});
        QList<Shape> boxes;
        for (int i = 0; i < References; ++i)
            boxes.append(Box(Reference0 + i, {0, contacts.at(i).y()}));
        referenceSwitch_ = d.Switch(QStringLiteral("ShapeQuadSwitch"), {pivotX, ReferenceY}, contacts);
        for (int i = 0; i < References; ++i)
            d.Line(boxes.at(i).Right(), referenceSwitch_.Contact(i));
        Click(QStringLiteral("Image1(1)"), ClickArea::Gesture::Click, referenceSwitch_.Area(),
              QStringLiteral("Click to step to the next reference"), {RefSelectMSB, RefSelectLSB}, [this] {
                  const int next = SelectedReference() + 1;
                  const int wrapped = next > 3 ? 0 : next;
                  const Intent together = Together();
                  Write(RefSelectMSB, wrapped / 2);
                  Write(RefSelectLSB, wrapped % 2);
              });
        const Shape high = Box(RefSelectMSB, {9, JogY}, CaptionAt::BelowRight);
        const Shape low = Box(RefSelectLSB, {25, JogY}, CaptionAt::Below);
        d.Link(high.Top(), referenceSwitch_);
        d.Link(low.Top(), referenceSwitch_);
    }

    void DrawSign(Drawing &d)
    {
        const Port split = d.Dot({35, ReferenceY});
        const Shape inverter = d.Gain({39, ReferenceY + 4}, QStringLiteral("-1"));
        signSwitch_ = d.Switch(QStringLiteral("LineInvert"), {56, ReferenceY},
                               {{49, ReferenceY - 4}, {49, ReferenceY + 4}});
        d.Line(referenceSwitch_.Pivot(), split);
        d.Path(split, {{35, ReferenceY - 4}}, signSwitch_.Contact(AsIs), false);
        d.Path(split, {{35, ReferenceY + 4}}, inverter.Left(), true);
        d.Line(inverter.Right(), signSwitch_.Contact(Inverted));
        d.Link(Box(ReferenceInvert, {46.5, ReferenceY - 11}).Bottom(), signSwitch_);
    }

    void DrawSource(Drawing &d)
    {
        sourceSwitch_ =
            d.Switch(QStringLiteral("LineSwitch"), {75, SourceY}, {{66, SourceY - 4}, {66, SourceY + 4}});
        d.Line(signSwitch_.Pivot(), sourceSwitch_.Contact(FromReference), 61);
        d.Line(Box(JogReference, {46, JogY}, CaptionAt::Below).Right(), sourceSwitch_.Contact(FromJog), 61);
        d.Link(Box(JogStatus, {64.5, JogY + 5}, CaptionAt::Below).Top(), sourceSwitch_);
    }

    void DrawEnable(Drawing &d)
    {
        const double y = SourceY;
        enableSwitch_ = d.Switch(QStringLiteral("LineRefEnable"), {95, y + 3}, {{86, y}, {86, y + 6}});
        d.Line(sourceSwitch_.Pivot(), enableSwitch_.Contact(Enabled));
        d.Constant(QStringLiteral("Label2"), QStringLiteral("0.00%"), enableSwitch_.Contact(Disabled));
        d.Label(QStringLiteral("LabelRefEnable"), QStringLiteral("Ref Enable"), {90.5, y - 3.5});
        LastBox(d, enableSwitch_.Pivot(), RampInput, {101, y + 3}, QStringLiteral("Ramp"));
    }

    LivePart referenceSwitch_;
    LivePart signSwitch_;
    LivePart sourceSwitch_;
    LivePart enableSwitch_;
};

} // namespace

constexpr BlockDescriptor BlockSetpoints = {.form = "FormSetpoints",
                                            .window = "Setpoints",
                                            .helpTopic = "Setpoints.htm",
                                            .rows = Rows,
                                            .sheet = MakeSheet<SetpointsSheet>};

} // namespace quorvik
