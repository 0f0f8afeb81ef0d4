#pragma once

#include "trend/TrendView.h"

#include <QAbstractTableModel>
#include <QColor>
#include <functional>

namespace quorvik
{

class TrendRecorder;

/** The channels as rows of a table: what is recorded of each, what it is at the cursors, and how it is drawn.
 * What is changed in a cell reaches recorder and view at once. */
class ChannelModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column : std::uint8_t { Name, Value, AtA, AtB, Difference, Rate, Fast, OwnScale, Plot, Columns };

    /** @param colourOf the colour of a curve as it is drawn. */
    ChannelModel(TrendRecorder &recorder, TrendView &view, std::function<QColor(int)> colourOf,
                 QObject *parent);

    /** The parameter of a row; -1 for none. */
    int ParamAt(int row) const;
    int RowOf(int param) const;
    /** The newest values and rates. */
    void Refresh();

    int rowCount(const QModelIndex &above = {}) const override;
    int columnCount(const QModelIndex &above = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDragActions() const override { return Qt::CopyAction; }

Q_SIGNALS:
    /** What was wanted cannot be, in a sentence. */
    void Refused(const QString &sentence);

private:
    const TrendTrack *TrackAt(int row) const;
    QString Text(const TrendTrack &track, Column column) const;
    QString TextAt(const TrendTrack &track, int cursor) const;
    QString DifferenceText(const TrendTrack &track) const;
    std::optional<bool> IsChecked(const TrendTrack &track, Column column) const;
    void Reload();

    TrendRecorder &recorder_;
    TrendView &view_;
    std::function<QColor(int)> colourOf_;
    std::vector<int> params_; ///< of the rows
};

/** "(193) Vel Feedback", as the recording called it. */
QString ChannelName(const TrendChannel &channel);

} // namespace quorvik
