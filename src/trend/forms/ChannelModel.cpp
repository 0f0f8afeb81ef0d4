#include "trend/forms/ChannelModel.h"

#include "desktop/ParameterMime.h"
#include "desktop/PlainText.h"
#include "model/Conversions.h"
#include "model/ShownText.h"
#include "model/TextTables.h"
#include "platform/Guard.h"
#include "trend/TrendRecorder.h"

#include <algorithm>
#include <array>

namespace quorvik
{

namespace
{

struct ColumnTexts {
    const char *title;
    const char *toolTip;
};

constexpr std::array<ColumnTexts, ChannelModel::Columns> Texts = {{
    {"Channel", "The check mark shows the curve or hides it"},
    {"Value", "The newest one of the recording"},
    {"At A", "The last value told at cursor A or before"},
    {"At B", "The last value told at cursor B or before"},
    {"B - A", "How much more it is at cursor B"},
    {"Samples/s", "What really came over the last seconds"},
    {"Fast", "Checked: as often as the line allows; else at the pace of the windows"},
    {"Own scale", "A value axis of its own, else that of all with the same unit"},
    {"Plot", "Which of the plots under each other; a number more than there are makes a new one"},
}};

bool IsAmount(std::int32_t attributes)
{
    const ValueType::Form form = TypeOf(TypeCode(attributes)).form;
    return form == ValueType::Form::Number || form == ValueType::Form::Unit;
}

} // namespace

QString ChannelName(const TrendChannel &channel)
{
    return QStringLiteral("(%1) %2").arg(channel.param).arg(channel.name);
}

ChannelModel::ChannelModel(TrendRecorder &recorder, TrendView &view, std::function<QColor(int)> colourOf,
                           QObject *parent)
    : QAbstractTableModel(parent)
    , recorder_(recorder)
    , view_(view)
    , colourOf_(std::move(colourOf))
{
    On(&view, &TrendView::CurvesChanged, this, [this] { Reload(); });
    On(&view, &TrendView::DataChanged, this, [this] { Reload(); });
    On(&view, &TrendView::CursorsChanged, this, [this] { Refresh(); });
    Reload();
}

void ChannelModel::Reload()
{
    // Curves of one plot stand together, in the order in which they are drawn.
    std::vector<TrendCurve> curves = view_.Curves();
    std::ranges::stable_sort(curves, {}, &TrendCurve::plot);
    std::vector<int> params(curves.size());
    std::ranges::transform(curves, params.begin(), &TrendCurve::param);
    if (params == params_) {
        Refresh();
        return;
    }
    beginResetModel();
    params_ = std::move(params);
    endResetModel();
}

void ChannelModel::Refresh()
{
    if (!params_.empty())
        Q_EMIT dataChanged(index(0, 0), index(int(params_.size()) - 1, Columns - 1));
}

int ChannelModel::ParamAt(int row) const
{
    return row >= 0 && row < int(params_.size()) ? params_[std::size_t(row)] : -1;
}

int ChannelModel::RowOf(int param) const
{
    const auto found = std::ranges::find(params_, param);
    return found == params_.end() ? -1 : int(found - params_.begin());
}

const TrendTrack *ChannelModel::TrackAt(int row) const
{
    const int p = ParamAt(row);
    return p < 0 ? nullptr : view_.Shown().TrackOf(p);
}

int ChannelModel::rowCount(const QModelIndex &above) const
{
    return above.isValid() ? 0 : int(params_.size());
}

int ChannelModel::columnCount(const QModelIndex &above) const
{
    return above.isValid() ? 0 : int(Columns);
}

QVariant ChannelModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= int(Columns))
        return {};
    const ColumnTexts &texts = Texts[std::size_t(section)];
    if (role == Qt::DisplayRole)
        return QString::fromLatin1(texts.title);
    if (role == Qt::ToolTipRole)
        return QString::fromLatin1(texts.toolTip);
    return {};
}

QString ChannelModel::TextAt(const TrendTrack &track, int cursor) const
{
    const std::optional<qint64> timeUs = view_.Cursor(cursor);
    const TrendSample *sample = timeUs ? track.samples.At(*timeUs) : nullptr;
    return sample == nullptr ? QString() : ShownText(sample->rawValue, track.channel.attributes);
}

QString ChannelModel::DifferenceText(const TrendTrack &track) const
{
    const std::int32_t attributes = track.channel.attributes;
    const std::optional<qint64> a = view_.Cursor(0);
    const std::optional<qint64> b = view_.Cursor(1);
    if (!a || !b || !IsAmount(attributes))
        return {};
    const TrendSample *first = track.samples.At(*a);
    const TrendSample *second = track.samples.At(*b);
    if (first == nullptr || second == nullptr)
        return {};
    const double difference =
        ShownNumber(second->rawValue, attributes) - ShownNumber(first->rawValue, attributes);
    return (QString::number(difference, 'f', DecimalsOf(attributes)) + u' ' + UnitText(attributes)).trimmed();
}

QString ChannelModel::Text(const TrendTrack &track, Column column) const
{
    const TrendCurve *curve = view_.CurveOf(track.channel.param);
    switch (column) {
    case Name:
        return ChannelName(track.channel);
    case Value:
        return track.samples.IsEmpty() ? QString()
                                       : ShownText(track.samples.Last().rawValue, track.channel.attributes);
    case AtA:
        return TextAt(track, 0);
    case AtB:
        return TextAt(track, 1);
    case Difference:
        return DifferenceText(track);
    case Rate: {
        const auto rate = view_.IsOther() ? std::nullopt : recorder_.RateOf(track.channel.param);
        return rate ? QString::number(*rate, 'f', *rate < 10 ? 1 : 0) : QString();
    }
    case Plot:
        return curve == nullptr ? QString() : QString::number(curve->plot + 1);
    case Fast:
    case OwnScale:
    case Columns:
        break;
    }
    return {};
}

std::optional<bool> ChannelModel::IsChecked(const TrendTrack &track, Column column) const
{
    const TrendCurve *curve = view_.CurveOf(track.channel.param);
    if (column == Name)
        return curve != nullptr && curve->isVisible;
    if (column == OwnScale)
        return curve != nullptr && curve->hasOwnScale;
    if (column != Fast)
        return std::nullopt;
    // Of what is recorded now, also while a frozen picture is shown.
    const TrendTrack *live = view_.IsOther() ? nullptr : view_.Live().TrackOf(track.channel.param);
    return (live == nullptr ? track : *live).channel.pace == TrendPace::Fast;
}

QVariant ChannelModel::data(const QModelIndex &index, int role) const
{
    const TrendTrack *track = index.isValid() ? TrackAt(index.row()) : nullptr;
    if (track == nullptr)
        return {};
    const auto column = Column(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return Text(*track, column);
    case Qt::EditRole:
        return column == Plot ? QVariant(Text(*track, column).toInt()) : QVariant(Text(*track, column));
    case Qt::CheckStateRole:
        if (const std::optional<bool> isChecked = IsChecked(*track, column))
            return int(*isChecked ? Qt::Checked : Qt::Unchecked);
        return {};
    case Qt::DecorationRole:
        if (const TrendCurve *curve = view_.CurveOf(track->channel.param); curve != nullptr && column == Name)
            return colourOf_(curve->colour);
        return {};
    case Qt::TextAlignmentRole:
        return int((column == Name ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    case Qt::ToolTipRole:
        return column == Name ? QVariant(PlainToolTip(ChannelName(track->channel)))
                              : headerData(column, Qt::Horizontal, Qt::ToolTipRole);
    case Qt::AccessibleTextRole:
        return QStringLiteral("%1, %2: %3")
            .arg(ChannelName(track->channel), headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(),
                 Text(*track, column));
    default:
        return {};
    }
}

bool ChannelModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const int p = ParamAt(index.row());
    if (p < 0)
        return false;
    const bool isOn = value.toInt() == Qt::Checked;
    return Guarded([&] {
        if (role == Qt::CheckStateRole && index.column() == Name)
            view_.SetVisible(p, isOn);
        else if (role == Qt::CheckStateRole && index.column() == OwnScale)
            view_.SetOwnScale(p, isOn);
        else if (role == Qt::CheckStateRole && index.column() == Fast) {
            const QString refusal = recorder_.AddChannel(p, isOn ? TrendPace::Fast : TrendPace::Slow);
            if (!refusal.isEmpty())
                Q_EMIT Refused(refusal);
        } else if (role == Qt::EditRole && index.column() == Plot)
            view_.Move(p, value.toInt() - 1);
        Refresh();
    });
}

Qt::ItemFlags ChannelModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled;
    const bool isRecorded = !view_.IsOther();
    if (index.column() == Name || index.column() == OwnScale || (index.column() == Fast && isRecorded))
        flags |= Qt::ItemIsUserCheckable;
    if (index.column() == Plot)
        flags |= Qt::ItemIsEditable;
    return flags;
}

QMimeData *ChannelModel::mimeData(const QModelIndexList &indexes) const
{
    const TrendTrack *track = indexes.isEmpty() ? nullptr : TrackAt(indexes.first().row());
    return track == nullptr ? nullptr : MakeParameterMime(track->channel.param, ChannelName(track->channel));
}

} // namespace quorvik
