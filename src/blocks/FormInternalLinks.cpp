#include "blocks/BlockSheet.h"

#include "model/ParameterTable.h"

#include <array>
#include <cmath>

namespace quorvik
{

namespace
{

using namespace Param;

constexpr int Links = 20;
constexpr int RowsInAll = 2 * Links;

constexpr std::array<BlockRow, RowsInAll> Rows = [] {
    std::array<BlockRow, RowsInAll> rows;
    for (int row = 0; row < RowsInAll; ++row)
        rows[std::size_t(row)] = InternalLink1Source + row;
    return rows;
}();

class InternalLinksSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        const ParameterTable &table = values();
        QString longestName;
        for (int p = 0; p <= table.UpperBound(); ++p)
            longestName = ruler().Wider(longestName, table[p].Name);
        const double nameWidth = std::ceil(ruler().text(longestName));
        const double captionWidth = std::ceil(ruler().text(QStringLiteral("(405) Destination 20"))) + 1;
        const double sourceX = captionWidth;
        const double nameX = sourceX + BoxSize(InternalLink1Source).width() + 1;
        const double arrowX = nameX + nameWidth + 1;
        const double destinationX = arrowX + 6 + captionWidth;
        const double destinationNameX = destinationX + BoxSize(InternalLink1Destination).width() + 1;
        d.Label({}, QStringLiteral("Source"), {sourceX, 0}, Qt::AlignLeft, true);
        d.Label({}, QStringLiteral("Destination"), {destinationX, 0}, Qt::AlignLeft, true);
        for (int link = 0; link < Links; ++link) {
            const double y = 3 + link * Pitch;
            const int source = 2 * link;
            const Shape from = PlaceRow(source, QStringLiteral("Source %1").arg(link + 1), {sourceX, y});
            PlaceName(d, source, {nameX, y}, longestName);
            const Shape to =
                PlaceRow(source + 1, QStringLiteral("Destination %1").arg(link + 1), {destinationX, y});
            d.ChosenWire({{arrowX, y}, Side::Right, from.Node()}, {{arrowX + 5, y}, Side::Left, to.Node()});
            PlaceName(d, source + 1, {destinationNameX, y}, longestName);
        }
    }

    void Update() override
    {
        const ParameterTable &table = values();
        for (int row = 0; row < RowsInAll; ++row) {
            const std::int32_t p = RowValue(InternalLink1Source + row);
            // A drive may answer with any number; one that no parameter has points at nothing.
            names_[std::size_t(row)].Set(InTable(p) ? table[p].Name : QString());
        }
    }

private:
    static constexpr double Pitch = 3.4;

    Shape PlaceRow(int row, const QString &caption, const QPointF &at)
    {
        SetCaption(InternalLink1Source + row, caption);
        return Box(InternalLink1Source + row, at, CaptionAt::Left);
    }

    void PlaceName(Drawing &d, int row, const QPointF &at, const QString &longest)
    {
        names_[std::size_t(row)] =
            d.LiveLabel(QStringLiteral("LabelName(%1)").arg(row), {}, longest, at, Qt::AlignLeft);
    }

    std::array<LiveText, RowsInAll> names_{};
};

} // namespace

constexpr BlockDescriptor BlockInternalLinks = {.form = "FormInternalLinks",
                                                .window = "Internal Links",
                                                .helpTopic = "Internal Links.htm",
                                                .rows = Rows,
                                                .sheet = MakeSheet<InternalLinksSheet>};

} // namespace quorvik
