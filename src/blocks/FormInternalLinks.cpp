#include "blocks/BlockForm.h"

#include "model/ParameterTable.h"

#include <QLabel>
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

class FormInternalLinks final : public BlockForm
{
public:
    using BlockForm::BlockForm;

protected:
    void Draw(Drawing &d) override
    {
        const ParameterTable &table = desk().table;
        QString longestName;
        for (int p = 0; p <= table.UpperBound(); ++p)
            longestName = view().Wider(longestName, table[p].Name);
        const double nameWidth = std::ceil(view().TextWidth(longestName));
        const double captionWidth = std::ceil(view().TextWidth(QStringLiteral("(405) Destination 20"))) + 1;
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
            PlaceRow(source, QStringLiteral("Source %1").arg(link + 1), {sourceX, y});
            PlaceName(source, {nameX, y}, longestName);
            d.Wire({{arrowX, y}, Side::Right}, {{arrowX + 5, y}, Side::Left});
            PlaceRow(source + 1, QStringLiteral("Destination %1").arg(link + 1), {destinationX, y});
            PlaceName(source + 1, {destinationNameX, y}, longestName);
        }
    }

    void Tick() override
    {
        const ParameterTable &table = desk().table;
        for (int row = 0; row < RowsInAll; ++row) {
            const std::int32_t p = RowValue(InternalLink1Source + row);
            // A drive may answer with any number; one that no parameter has points at nothing.
            names_[std::size_t(row)]->setText(InTable(p) ? table[p].Name : QString());
        }
    }

private:
    static constexpr double Pitch = 3.4;

    void PlaceRow(int row, const QString &caption, const QPointF &at)
    {
        SetCaption(InternalLink1Source + row, caption);
        Box(InternalLink1Source + row, at, CaptionAt::Left);
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

constexpr BlockDescriptor BlockInternalLinks = {.form = "FormInternalLinks",
                                                .window = "Internal Links",
                                                .helpTopic = "Internal Links.htm",
                                                .rows = Rows,
                                                .make = MakeBlock<FormInternalLinks, BlockInternalLinks>};

} // namespace quorvik
