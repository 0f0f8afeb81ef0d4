#include "blocks/BlockForm.h"

#include "model/Model.h"

#include <QLabel>
#include <array>
#include <cmath>

namespace quorvik
{

namespace
{

constexpr int Links = 20;
constexpr int RowsInAll = 2 * Links;

#define QUORVIK_LINK(k)                                                                                      \
    {"Source " #k, 2 * (k)-2},                                                                               \
    {                                                                                                        \
        "Destination " #k, 2 * (k)-1                                                                         \
    }

constexpr BlockRow Rows[] = {
    QUORVIK_LINK(1),  QUORVIK_LINK(2),  QUORVIK_LINK(3),  QUORVIK_LINK(4),  QUORVIK_LINK(5),
    QUORVIK_LINK(6),  QUORVIK_LINK(7),  QUORVIK_LINK(8),  QUORVIK_LINK(9),  QUORVIK_LINK(10),
    QUORVIK_LINK(11), QUORVIK_LINK(12), QUORVIK_LINK(13), QUORVIK_LINK(14), QUORVIK_LINK(15),
    QUORVIK_LINK(16), QUORVIK_LINK(17), QUORVIK_LINK(18), QUORVIK_LINK(19), QUORVIK_LINK(20),
};

#undef QUORVIK_LINK

class FormInternalLinks final : public BlockForm
{
public:
    explicit FormInternalLinks(Desk &desk)
        : BlockForm(desk, {.name = "FormInternalLinks",
                           .caption = QStringLiteral("Internal Links"),
                           .helpTopic = "Internal Links.htm",
                           .rows = Rows,
                           .base = 366})
    {
    }

protected:
    void Draw(Drawing &d) override
    {
        const QString longestName = LongestName();
        const double nameWidth = std::ceil(view().TextWidth(longestName));
        const double captionWidth = std::ceil(view().TextWidth(QStringLiteral("(405) Destination 20"))) + 1;
        const double sourceX = captionWidth;
        const double nameX = sourceX + BoxSize(0).width() + 1;
        const double arrowX = nameX + nameWidth + 1;
        const double destinationX = arrowX + 6 + captionWidth;
        const double destinationNameX = destinationX + BoxSize(1).width() + 1;
        d.Label({}, QStringLiteral("Source"), {sourceX, 0}, Qt::AlignLeft, true);
        d.Label({}, QStringLiteral("Destination"), {destinationX, 0}, Qt::AlignLeft, true);
        for (int link = 0; link < Links; ++link) {
            const int source = 2 * link;
            const double y = 3 + link * Pitch;
            Box(source, {sourceX, y}, CaptionAt::Left);
            PlaceName(source, {nameX, y}, longestName);
            d.Wire({{arrowX, y}, Side::Right}, {{arrowX + 5, y}, Side::Left});
            Box(source + 1, {destinationX, y}, CaptionAt::Left);
            PlaceName(source + 1, {destinationNameX, y}, longestName);
        }
    }

    void Tick() override
    {
        const RecordArray &table = desk().model.ParamTable;
        for (int row = 0; row < RowsInAll; ++row) {
            const std::int32_t p = RowValue(row);
            // A drive may answer with any number; one that no parameter has points at nothing.
            const bool exists = p >= 0 && p <= table.UpperBound();
            names_[std::size_t(row)]->setText(exists ? table[p].Name : QString());
        }
    }

private:
    static constexpr double Pitch = 3.4;

    QString LongestName() const
    {
        const RecordArray &table = desk().model.ParamTable;
        QString longest;
        for (int p = 0; p <= table.UpperBound(); ++p)
            if (View().TextWidth(table[p].Name) > View().TextWidth(longest))
                longest = table[p].Name;
        return longest;
    }

    void PlaceName(int row, const QPointF &at, const QString &longest)
    {
        QLabel *&name = names_[std::size_t(row)];
        name = view().MakeLabel(ControlName("LabelName", row), {}, false);
        view().PlaceText(name, at, Qt::AlignLeft, longest);
    }

    std::array<QLabel *, RowsInAll> names_{};
};

} // namespace

BlockForm *MakeFormInternalLinks(Desk &desk, int);

BlockForm *MakeFormInternalLinks(Desk &desk, int)
{
    return Loaded(new FormInternalLinks(desk));
}

} // namespace quorvik
