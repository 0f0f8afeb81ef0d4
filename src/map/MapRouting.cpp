// The ways of the wires: sides and ports at the cards, then a channel and gutters for each wire, then lanes.

#include "map/MapLanes.h"
#include "map/MapLayout.h"
#include "map/MapMetrics.h"

#include <QLineF>
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace quorvik
{

namespace
{

using namespace MapMetrics;

enum class At : std::uint8_t { Left, Right, Top, Bottom };

constexpr double PortDistance = 7;
constexpr double PortInset = 7; ///< from the card's ends
constexpr double CrowdCost = 14;
constexpr int Nudges = 40;
constexpr double Nudge = 4;

struct End {
    int card = -1;
    At side = At::Right;
    double place = 0; ///< y, of top and bottom x
};

struct Plan {
    End from;
    End to;
    bool isStraight = false;
    int fromGutter = -1;
    int toGutter = -1;
    int channel = -1; ///< -1 where one gutter does
};

class Router
{
public:
    Router(const MapLayout &layout, const std::vector<MapWire> &wires, const std::vector<double> &channelTops)
        : layout_(layout)
        , wires_(wires)
        , channelTops_(channelTops)
        , plans_(wires.size())
        , ways_(wires.size())
    {
    }

    std::vector<QPolygonF> Ways()
    {
        for (std::size_t i = 0; i < wires_.size(); ++i)
            ChooseSides(i);
        PlacePorts();
        for (std::size_t i = 0; i < wires_.size(); ++i)
            ChooseWay(i);
        for (int attempt = 0; attempt < Nudges; ++attempt) {
            Draw();
            if (!PartOneOverlap())
                break;
        }
        return std::move(ways_);
    }

private:
    static const MapCard &Entry(int card) { return MapCards()[std::size_t(card)]; }
    static bool IsEdge(int card) { return Entry(card).column == 0 || Entry(card).column == MapColumns - 1; }

    double Middle(int card) const { return layout_.Card(card).center().y(); }
    double FirstRow(int card) const { return layout_.Header(card).bottom() + 1 + RowHeight / 2; }

    void ChooseSides(std::size_t i)
    {
        Plan &plan = plans_[i];
        plan.from.card = wires_[i].from;
        plan.to.card = wires_[i].to;
        const MapCard &from = Entry(plan.from.card);
        const MapCard &to = Entry(plan.to.card);
        if (from.column < to.column)
            plan.from.side = At::Right, plan.to.side = At::Left;
        else if (from.column > to.column)
            plan.from.side = At::Left, plan.to.side = At::Right;
        else if (!IsEdge(plan.from.card) && std::abs(from.band - to.band) == 1) {
            plan.from.side = from.band > to.band ? At::Top : At::Bottom;
            plan.to.side = from.band > to.band ? At::Bottom : At::Top;
            plan.isStraight = true;
        } else {
            plan.from.side = plan.to.side = from.column == MapColumns - 1 ? At::Left : At::Right;
        }
        const bool areBeside = std::abs(from.column - to.column) == 1;
        if (areBeside && layout_.Card(plan.from.card).top() == layout_.Card(plan.to.card).top())
            plan.isStraight = true;
    }

    bool IsTaken(const End &end, double place, double distance) const
    {
        return std::ranges::any_of(taken_, [&](const End &other) {
            return other.card == end.card && other.side == end.side &&
                   std::abs(other.place - place) < distance;
        });
    }

    /** The free place on a side next to the wanted one. */
    double FreePlace(const End &end, double wanted) const
    {
        const QRectF card = layout_.Card(end.card);
        const double low = card.top() + PortInset;
        const double high = card.bottom() - PortInset;
        wanted = std::clamp(wanted, low, high);
        for (int distance = int(PortDistance); distance > 1; --distance)
            for (int away = 0; away < card.height(); ++away)
                for (const double place : {wanted + away, wanted - away})
                    if (place >= low && place <= high && !IsTaken(end, place, distance))
                        return place;
        return wanted;
    }

    void PlacePorts()
    {
        PlaceStraight();
        // From above down, so that wires of one side do not cross right at the card.
        std::vector<std::pair<double, End *>> ends;
        for (std::size_t i = 0; i < plans_.size(); ++i) {
            if (plans_[i].isStraight)
                continue;
            ends.emplace_back(Middle(plans_[i].to.card), &plans_[i].from);
            ends.emplace_back(Middle(plans_[i].from.card), &plans_[i].to);
        }
        std::ranges::stable_sort(ends, {}, &std::pair<double, End *>::first);
        for (const bool isOfRows : {true, false})
            for (const auto &[target, end] : ends) {
                const int row = RowOf(*end);
                if ((row >= 0) != isOfRows)
                    continue;
                const double wanted = row >= 0 ? layout_.Row(end->card, row).center().y() : target;
                end->place = FreePlace(*end, wanted);
                taken_.push_back(*end);
            }
    }

    void PlaceStraight()
    {
        for (Plan &plan : plans_) {
            if (!plan.isStraight)
                continue;
            const bool isUpright = plan.from.side == At::Top || plan.from.side == At::Bottom;
            double place = isUpright ? layout_.Card(plan.from.card).center().x() : FirstRow(plan.from.card);
            while (IsTaken(plan.from, place, PortDistance) || IsTaken(plan.to, place, PortDistance))
                place += isUpright ? PortDistance * 2 : RowHeight / 2;
            plan.from.place = plan.to.place = place;
            taken_.push_back(plan.from);
            taken_.push_back(plan.to);
        }
    }

    /** The row that an end belongs to: only where the rows are terminals, one wire to a row. */
    int RowOf(const End &end) const
    {
        for (std::size_t i = 0; i < plans_.size(); ++i) {
            if (&plans_[i].from == &end && Entry(end.card).group == CardGroup::Terminals)
                return wires_[i].fromRow;
            if (&plans_[i].to == &end && Entry(end.card).group == CardGroup::Terminals)
                return wires_[i].toRow;
        }
        return -1;
    }

    /** Whether no card stands in the band of a card, between it and a column. */
    static bool IsFreeBeside(int card, int column)
    {
        if (IsEdge(card))
            return false;
        const int low = std::min(Entry(card).column, column);
        const int high = std::max(Entry(card).column, column);
        return std::ranges::none_of(MapCards(), [&](const MapCard &other) {
            return other.column > low && other.column < high && other.band == Entry(card).band;
        });
    }

    void ChooseWay(std::size_t i)
    {
        Plan &plan = plans_[i];
        if (plan.isStraight)
            return;
        const auto gutterAt = [](const End &end) {
            return end.side == At::Right ? Entry(end.card).column : Entry(end.card).column - 1;
        };
        plan.fromGutter = gutterAt(plan.from);
        plan.toGutter = gutterAt(plan.to);
        if (plan.fromGutter == plan.toGutter)
            return;
        if (IsFreeBeside(plan.to.card, Entry(plan.from.card).column)) {
            plan.toGutter = plan.fromGutter;
            return;
        }
        if (IsFreeBeside(plan.from.card, Entry(plan.to.card).column)) {
            plan.fromGutter = plan.toGutter;
            return;
        }
        double least = 0;
        for (int channel = 0; channel < int(channelTops_.size()); ++channel) {
            const double y = channelTops_[std::size_t(channel)] + ChannelHeight / 2;
            const double cost = std::abs(plan.from.place - y) + std::abs(plan.to.place - y) +
                                CrowdCost * crowd_[std::size_t(channel)];
            if (plan.channel >= 0 && cost >= least)
                continue;
            plan.channel = channel;
            least = cost;
        }
        ++crowd_[std::size_t(plan.channel)];
    }

    static double GutterLeft(int gutter) { return Margin + gutter * (CardWidth + GutterWidth) + CardWidth; }
    static double GutterMiddle(int gutter) { return GutterLeft(gutter) + GutterWidth / 2; }
    static int Towards(double from, double to) { return to < from ? -1 : to > from ? 1 : 0; }
    static int SideGoes(At side) { return side == At::Right ? -1 : 1; }

    void Draw()
    {
        LayChannels();
        LayGutters();
        for (std::size_t i = 0; i < plans_.size(); ++i)
            ways_[i] = WayOf(i);
    }

    void LayChannels()
    {
        level_.assign(plans_.size(), {});
        for (int channel = 0; channel < int(channelTops_.size()); ++channel) {
            const double top = channelTops_[std::size_t(channel)];
            std::vector<Stretch *> here;
            for (std::size_t i = 0; i < plans_.size(); ++i)
                if (const Plan &plan = plans_[i]; plan.channel == channel) {
                    level_[i] = {.wire = int(i),
                                 .from = GutterMiddle(plan.fromGutter),
                                 .to = GutterMiddle(plan.toGutter),
                                 .fromGoes = Towards(top, plan.from.place),
                                 .toGoes = Towards(top, plan.to.place)};
                    here.push_back(&level_[i]);
                }
            LayLanes(here, top, ChannelHeight);
        }
    }

    void LayGutters()
    {
        upright_.assign(2 * plans_.size(), {});
        for (int gutter = 0; gutter + 1 < MapColumns; ++gutter) {
            std::vector<Stretch *> here;
            const auto add = [&](std::size_t at, const Stretch &stretch) {
                upright_[at] = stretch;
                here.push_back(&upright_[at]);
            };
            for (std::size_t i = 0; i < plans_.size(); ++i) {
                const Plan &plan = plans_[i];
                const double across = GutterMiddle(gutter);
                if (plan.channel >= 0 && plan.fromGutter == gutter)
                    add(2 * i, {int(i), plan.from.place, level_[i].lane, SideGoes(plan.from.side),
                                Towards(across, GutterMiddle(plan.toGutter))});
                if (plan.channel >= 0 && plan.toGutter == gutter)
                    add(2 * i + 1, {int(i), level_[i].lane, plan.to.place,
                                    Towards(across, GutterMiddle(plan.fromGutter)), SideGoes(plan.to.side)});
                if (plan.channel < 0 && !plan.isStraight && plan.fromGutter == gutter)
                    add(2 * i, {int(i), plan.from.place, plan.to.place, SideGoes(plan.from.side),
                                SideGoes(plan.to.side)});
            }
            LayLanes(here, GutterLeft(gutter), GutterWidth);
        }
    }

    QPointF PortAt(const End &end) const
    {
        const QRectF card = layout_.Card(end.card);
        switch (end.side) {
        case At::Left:
            return {card.left(), end.place};
        case At::Right:
            return {card.right(), end.place};
        case At::Top:
            return {end.place, card.top()};
        case At::Bottom:
            break;
        }
        return {end.place, card.bottom()};
    }

    QPolygonF WayOf(std::size_t i) const
    {
        const Plan &plan = plans_[i];
        const QPointF from = PortAt(plan.from);
        const QPointF to = PortAt(plan.to);
        if (plan.isStraight)
            return {from, to};
        const double x = upright_[2 * i].lane;
        if (plan.channel < 0)
            return {from, {x, from.y()}, {x, to.y()}, to};
        const double y = level_[i].lane;
        const double toX = upright_[2 * i + 1].lane;
        return {from, {x, from.y()}, {x, y}, {toX, y}, {toX, to.y()}, to};
    }

    /** Moves a port where two wires run over each other on their way to it. @return whether one was moved. */
    bool PartOneOverlap()
    {
        constexpr double apart = 3;
        for (std::size_t one = 0; one < ways_.size(); ++one)
            for (std::size_t other = one + 1; other < ways_.size(); ++other)
                for (int a = 0; a + 1 < ways_[one].size(); ++a)
                    for (int b = 0; b + 1 < ways_[other].size(); ++b) {
                        const QLineF line(ways_[one][a], ways_[one][a + 1]);
                        const QLineF second(ways_[other][b], ways_[other][b + 1]);
                        if (line.dy() != 0 || second.dy() != 0 || std::abs(line.y1() - second.y1()) >= apart)
                            continue;
                        const double left =
                            std::max(std::min(line.x1(), line.x2()), std::min(second.x1(), second.x2()));
                        const double right =
                            std::min(std::max(line.x1(), line.x2()), std::max(second.x1(), second.x2()));
                        if (right - left > 1 && (MovePort(other, line.y1()) || MovePort(one, line.y1())))
                            return true;
                    }
        return false;
    }

    bool MovePort(std::size_t wire, double y)
    {
        if (plans_[wire].isStraight)
            return false;
        for (End *end : {&plans_[wire].to, &plans_[wire].from}) {
            const QRectF card = layout_.Card(end->card);
            if (std::abs(end->place - y) >= Nudge)
                continue;
            end->place += end->place + Nudge <= card.bottom() - 2 ? Nudge : 2 * Nudge - card.height() / 2;
            return true;
        }
        return false;
    }

    const MapLayout &layout_;
    const std::vector<MapWire> &wires_;
    const std::vector<double> &channelTops_;
    std::vector<Plan> plans_;
    std::vector<QPolygonF> ways_;
    std::vector<End> taken_;
    std::array<int, MapBands + 1> crowd_{};
    std::vector<Stretch> level_;
    std::vector<Stretch> upright_; ///< two for each wire: at its beginning and at its end
};

} // namespace

void MapLayout::Route(const std::vector<MapWire> &wires)
{
    ways_ = Router(*this, wires, channelTops_).Ways();
}

} // namespace quorvik
